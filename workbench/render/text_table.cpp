#include "workbench/render/text_table.h"

#include <algorithm>
#include <string>
#include <vector>

#include "workbench/render/cell_texts.h"
#include "workbench/render/footnotes.h"
#include "workbench/render/grid.h"
#include "workbench/render/wrap.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr std::string_view kGap = "  ";
constexpr std::string_view kRule = "─";
constexpr std::string_view kHeavyRule = "━";
constexpr size_t kTextWidth = 100;     // of a heading over a narrower table
constexpr size_t kWidestLabel = 40;    // of a row's label; longer ones are broken
constexpr size_t kWidestHeading = 12;  // of a column's heading, as far as its words allow
constexpr size_t kWidestGroupHeading = 16;
constexpr size_t kWidestWord = 30;
constexpr size_t kHangingIndent = 2;  // of a broken label, so that the next one is told from it
constexpr size_t kLargeGroup = 3;     // rows or lines of one outermost label

using Lines = std::vector<std::string>;

/// The line without blanks at its end.
std::string trimmedLine(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

/// Lines of equal width.
struct Block {
  Lines lines;
  size_t width = 0;
};

Block blockOf(const Lines& lines, size_t width, Align align) {
  Block block{{}, width};
  for (const std::string& line : lines) block.lines.push_back(placed(line, width, align));
  return block;
}

/// Puts a block to the right of another; both stand on the same last line.
void putBeside(Block& left, const Block& right, std::string_view gap) {
  const size_t height = std::max(left.lines.size(), right.lines.size());
  left.lines.insert(left.lines.begin(), height - left.lines.size(), std::string(left.width, ' '));
  const size_t above = height - right.lines.size();
  for (size_t i = 0; i < height; ++i) {
    left.lines[i] += gap;
    left.lines[i] += i < above ? std::string(right.width, ' ') : right.lines[i - above];
  }
  left.width += gap.size() + right.width;
}

/// The columns that head the rows: one for each level of each row dimension.
class RowHeadings {
 public:
  explicit RowHeadings(const Grid& grid) : rows_(grid.rows()) {
    for (size_t d = 0; d < rows_.dimensions().size(); ++d) {
      addDimension(grid.table().dimensions()[rows_.dimensions()[d]], rows_.depth(d));
    }
    hasLargeGroups_ = titles_.size() > 1 && findsLargeGroups();
  }

  /// The width of all headings and the gaps behind them.
  size_t width() const {
    size_t width = 0;
    for (const size_t w : widths_) width += w + kGap.size();
    return width;
  }

  /// The names of the dimensions.
  Block titles() const {
    Block block;
    for (size_t i = 0; i < titles_.size(); ++i) {
      putBeside(block, blockOf(titles_[i], widths_[i], Align::kLeft), i == 0 ? "" : kGap);
    }
    return block;
  }

  /// The lines that head a row; rows have to be asked for in order, from the first. Labels that a
  /// row shares with the one before are not repeated, but those of several lines go on beside the
  /// rows that share them.
  Lines nextLines(size_t row) {
    const std::vector<const Label*> labels = labelsOf(row);
    shownLines_.resize(labels.size());
    std::fill(shownLines_.begin() + static_cast<ptrdiff_t>(sharedLevels(row)), shownLines_.end(),
              0);
    size_t height = 1;
    for (size_t i = sharedLevels(row + 1); i < labels.size(); ++i) {
      const size_t count = labels[i]->lines.size();
      height = std::max(height, count - std::min(count, shownLines_[i]));
    }
    Lines result(height);
    for (std::string& line : result) {
      for (size_t i = 0; i < labels.size(); ++i) {
        const Lines& all = labels[i]->lines;
        const bool isShown = shownLines_[i] < all.size();
        line += placed(isShown ? all[shownLines_[i]++] : "", widths_[i], Align::kLeft);
        line += kGap;
      }
    }
    return result;
  }

  /// True when rows of another outermost label begin here and such groups take many lines.
  bool startsGroup(size_t row) const {
    return hasLargeGroups_ && row > 0 && !sameGroup(row, row - 1);
  }

 private:
  /// A label as it is shown, for every node of a dimension.
  struct Label {
    std::string text;
    Lines lines;
  };

  void addDimension(const Dimension& dimension, size_t depth) {
    const size_t first = titles_.size();
    titles_.push_back(wrapText(printable(dimension.label().text), kWidestLabel));
    titles_.resize(first + depth, Lines{""});
    for (size_t i = first; i < titles_.size(); ++i) widths_.push_back(widestLine(titles_[i]));
    std::vector<Label>& labels = labels_.emplace_back();
    std::vector<int32_t>& parents = parents_.emplace_back();
    for (const DimensionNode& node : dimension.nodes()) {
      const std::string text = shownCategory(printable(node.label.text));
      labels.push_back({text, wrapText(text, kWidestLabel, kHangingIndent)});
      parents.push_back(node.parent);
    }
    std::vector<size_t> level(labels.size(), first);
    for (size_t i = 1; i < labels.size(); ++i) {  // parents come before their children
      if (parents[i] > 0) level[i] = level[static_cast<size_t>(parents[i])] + 1;
      if (level[i] < widths_.size()) {
        widths_[level[i]] = std::max(widths_[level[i]], widestLine(labels[i].lines));
      }
    }
  }

  /// Labels of all levels of all dimensions; none is null.
  std::vector<const Label*> labelsOf(size_t row) const {
    static const Label kNone;
    std::vector<const Label*> labels;
    for (size_t d = 0; d < labels_.size(); ++d) {
      const size_t first = labels.size();
      for (int32_t node = rows_.node(row, d); node > 0;
           node = parents_[d][static_cast<size_t>(node)]) {
        labels.push_back(&labels_[d][static_cast<size_t>(node)]);
      }
      std::reverse(labels.begin() + static_cast<ptrdiff_t>(first), labels.end());
      labels.resize(first + rows_.depth(d), &kNone);
    }
    return labels;
  }

  /// How many of its outer labels a row shares with the row before; never all.
  size_t sharedLevels(size_t row) const {
    if (row == 0 || row >= rows_.placeCount()) return 0;
    const std::vector<const Label*> labels = labelsOf(row);
    const std::vector<const Label*> before = labelsOf(row - 1);
    size_t shared = 0;
    while (shared + 1 < labels.size() && labels[shared] == before[shared]) ++shared;
    return shared;
  }

  /// True when any group has many rows, or when groups take many lines on average.
  bool findsLargeGroups() {
    size_t run = 0, groups = 0, lines = 0;
    for (size_t row = 0; row < rows_.placeCount(); ++row) {
      const bool isFirst = row == 0 || !sameGroup(row, row - 1);
      run = isFirst ? 1 : run + 1;
      if (run >= kLargeGroup) return true;
      groups += isFirst ? 1 : 0;
      lines += nextLines(row).size();
    }
    return lines >= kLargeGroup * std::max<size_t>(groups, 1);
  }

  bool sameGroup(size_t a, size_t b) const { return labelsOf(a)[0] == labelsOf(b)[0]; }

  const GridAxis& rows_;
  std::vector<Lines> titles_;
  std::vector<size_t> widths_;
  std::vector<std::vector<Label>> labels_;     // by dimension and node
  std::vector<std::vector<int32_t>> parents_;  // likewise
  std::vector<size_t> shownLines_;             // of the labels of the row at hand, by level
  bool hasLargeGroups_ = false;
};

/// A number cut at its decimal point, so that points stand below each other. A word is all rest.
struct CellPieces {
  std::string whole;
  std::string rest;
  bool isWord = false;
};

CellPieces cutAtPoint(const std::string& text) {
  const bool isWord = !text.empty() && text.find_first_of(".0123456789") == std::string::npos;
  const size_t point = isWord ? 0 : std::min(text.find('.'), text.size());
  return {text.substr(0, point), text.substr(point), isWord};
}

class TextTable {
 public:
  explicit TextTable(const Table& table)
      : grid_(table), texts_(table), rowHeadings_(grid_), columns_(grid_.columns().placeCount()) {
    layOutHeadings();
    layOutCells();
    widenForHeadings();
  }

  void write(Writer& out) {
    const std::string heading = printable(tableHeading(grid_.table()));
    const size_t width = rowHeadings_.width() + spanWidth(0, columns_.size());
    for (const std::string& line : wrapText(heading, std::max(width, kTextWidth))) {
      out << line << '\n';
    }
    out << repeated(kHeavyRule, width) << '\n';
    writeHeadings(out);
    out << repeated(kRule, width) << '\n';
    writeRows(out);
    out << repeated(kHeavyRule, width) << '\n';
    for (size_t i = 0; i < footnotes_.texts().size(); ++i) {
      out << Footnotes::letters(i) << ". " << printable(footnotes_.texts()[i]) << '\n';
    }
    out << '\n';
  }

 private:
  struct Column {
    std::vector<std::string> path;  // headings of all levels; a short path stands at the bottom
    std::vector<CellPieces> cells;
    size_t wholeWidth = 0;
    size_t restWidth = 0;
    size_t width = 0;
  };

  std::vector<std::string> pathOf(size_t place) {
    const GridAxis& axis = grid_.columns();
    std::vector<std::string> path;
    for (size_t d = 0; d < axis.dimensions().size(); ++d) {
      for (const std::string_view label : axis.path(place, d)) {
        path.push_back(shownCategory(printable(label)));
      }
      const int32_t node = axis.node(place, d);
      if (node < 0) continue;
      const Dimension& dimension = grid_.table().dimensions()[axis.dimensions()[d]];
      for (const LabelData& note : dimension.node(node).footnotes) {
        path.back() += Footnotes::superscript(footnotes_.numberOf(note.text));
      }
    }
    if (path.empty()) path.emplace_back();
    return path;
  }

  void layOutHeadings() {
    for (size_t c = 0; c < columns_.size(); ++c) {
      columns_[c].path = pathOf(c);
      levels_ = std::max(levels_, columns_[c].path.size());
    }
    for (Column& column : columns_) {
      column.path.insert(column.path.begin(), levels_ - column.path.size(), "");
    }
  }

  CellPieces piecesOf(uint32_t cell) {
    if (cell == Grid::kNoCell) return {};
    CellPieces pieces = cutAtPoint(texts_(cell));
    const int32_t note = grid_.table().cell(cell).note;
    if (note >= 0) {
      const std::string& text = grid_.table().notes()[static_cast<size_t>(note)].text;
      pieces.rest += Footnotes::superscript(footnotes_.numberOf(text));
    }
    return pieces;
  }

  void layOutCells() {
    const size_t rows = grid_.rows().placeCount();
    for (size_t row = 0; row < rows; ++row) {
      for (size_t c = 0; c < columns_.size(); ++c) {
        Column& column = columns_[c];
        column.cells.push_back(piecesOf(grid_.cell(row, c)));
        const CellPieces& pieces = column.cells.back();
        column.wholeWidth = std::max(column.wholeWidth, pieces.whole.size());
        size_t& width = pieces.isWord ? column.width : column.restWidth;
        width = std::max(width, widthOf(pieces.rest));
      }
    }
    for (Column& column : columns_) {
      column.width = std::max(column.width, column.wholeWidth + column.restWidth);
    }
  }

  /// The end of the columns that stand under the same heading at a level.
  size_t spanEnd(size_t level, size_t start) const {
    const auto& path = columns_[start].path;
    size_t end = start + 1;
    if (level + 1 == levels_ || path[level].empty()) return end;
    const auto stop = path.begin() + static_cast<ptrdiff_t>(level) + 1;
    while (end < columns_.size() && std::equal(path.begin(), stop, columns_[end].path.begin())) {
      ++end;
    }
    return end;
  }

  size_t spanWidth(size_t start, size_t end) const {
    size_t width = kGap.size() * (end - start - (end > start ? 1 : 0));
    for (size_t c = start; c < end; ++c) width += columns_[c].width;
    return width;
  }

  static size_t widthWanted(const std::string& heading, size_t atLeast, size_t limit) {
    const size_t widest = std::max({atLeast, limit, widestWord(heading)});
    return widestLine(wrapText(heading, std::min(widest, std::max(atLeast, kWidestWord))));
  }

  /// Gives every heading the room that its words need, from the leaves up.
  void widenForHeadings() {
    for (size_t level = levels_; level-- > 0;) {
      const size_t limit = level + 1 == levels_ ? kWidestHeading : kWidestGroupHeading;
      for (size_t start = 0; start < columns_.size();) {
        const size_t end = spanEnd(level, start);
        size_t have = spanWidth(start, end);
        const size_t wanted = widthWanted(columns_[start].path[level], have, limit);
        for (size_t c = start; have < wanted; c = c + 1 < end ? c + 1 : start) {
          ++columns_[c].width;
          ++have;
        }
        start = end;
      }
    }
  }

  /// The headings of some columns from a level down: a heading of its own stands over a rule.
  Block headingsOf(size_t level, size_t start, size_t end) const {
    const std::string& text = columns_[start].path[level];
    const size_t width = spanWidth(start, end);
    if (level + 1 == levels_) return blockOf(wrapText(text, width), width, Align::kRight);
    Block below = headingsBeside(level + 1, start, end);
    if (text.empty()) return below;
    Block block = blockOf(wrapText(text, width), width, Align::kCentre);
    block.lines.push_back(repeated(kRule, width));
    block.lines.insert(block.lines.end(), below.lines.begin(), below.lines.end());
    return block;
  }

  Block headingsBeside(size_t level, size_t start, size_t end) const {
    Block block;
    for (size_t at = start; at < end;) {
      const size_t next = std::min(spanEnd(level, at), end);
      putBeside(block, headingsOf(level, at, next), at == start ? "" : kGap);
      at = next;
    }
    return block;
  }

  void writeHeadings(Writer& out) const {
    Block block = rowHeadings_.titles();
    putBeside(block, headingsBeside(0, 0, columns_.size()), block.width == 0 ? "" : kGap);
    for (const std::string& line : block.lines) out << trimmedLine(line) << '\n';
  }

  std::string cellsOf(size_t row) const {
    std::string line;
    for (const Column& column : columns_) {
      const CellPieces& cell = column.cells[row];
      if (cell.isWord) {
        line += placed(cell.rest, column.width, Align::kRight);
      } else {
        line.append(column.width - column.wholeWidth - column.restWidth, ' ');
        line += placed(cell.whole, column.wholeWidth, Align::kRight);
        line += placed(cell.rest, column.restWidth, Align::kLeft);
      }
      line += kGap;
    }
    return line;
  }

  void writeRows(Writer& out) {
    for (size_t row = 0; row < grid_.rows().placeCount(); ++row) {
      if (rowHeadings_.startsGroup(row)) out << '\n';
      const Lines lines = rowHeadings_.nextLines(row);
      out << trimmedLine(lines[0] + cellsOf(row)) << '\n';
      for (size_t i = 1; i < lines.size(); ++i) out << trimmedLine(lines[i]) << '\n';
    }
  }

  const Grid grid_;
  const CellTexts texts_;
  RowHeadings rowHeadings_;
  std::vector<Column> columns_;
  size_t levels_ = 0;
  Footnotes footnotes_;
};

}  // namespace

void writeTextTable(const Table& table, Writer& out) { TextTable(table).write(out); }

}  // namespace workbench
