#include <algorithm>
#include <string>

#include "workbench/render/grid.h"
#include "workbench/render/number_text.h"
#include "workbench/render/render.h"
#include "workbench/render/report_text.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr const char* kGap = "  ";
constexpr const char* kRule = "\u2500";
constexpr const char* kHeavyRule = "\u2501";

std::string repeated(const char* text, size_t count) {
  std::string result;
  for (size_t i = 0; i < count; ++i) result += text;
  return result;
}

std::string padded(const std::string& text, size_t width, bool right) {
  const size_t have = displayWidth(text);
  const std::string blanks(width > have ? width - have : 0, ' ');
  return right ? blanks + text : text + blanks;
}

/// The text of one table, cut into columns of equal width line by line.
class TextTable {
 public:
  explicit TextTable(const Table& table) : grid_(table) {
    layOutColumns();
    layOutRows();
    layOutCells();
  }

  void write(std::ostream& out) const {
    const std::string heading = printable(tableHeading(grid_.table));
    const size_t width = std::max(totalWidth(), displayWidth(heading));
    out << heading << '\n' << repeated(kHeavyRule, width) << '\n';
    writeColumnHeadings(out);
    out << repeated(kRule, width) << '\n';
    writeRows(out);
    out << repeated(kHeavyRule, width) << '\n';
    for (size_t i = 0; i < notes_.texts().size(); ++i) {
      out << Footnotes::letter(i) << ". " << printable(notes_.texts()[i]) << '\n';
    }
    out << '\n';
  }

 private:
  void layOutColumns() {
    for (const Place& place : grid_.columns) {
      std::vector<std::string> path;
      for (const LabelData* label : grid_.headings(grid_.columnDimensions, place)) {
        if (!label->text.empty()) path.push_back(printable(label->text));
      }
      path.back() += footnoteMarks(place);
      headings_.push_back(std::move(path));
    }
    headingDepth_ = 0;
    for (const auto& path : headings_) headingDepth_ = std::max(headingDepth_, path.size());
    // A short path stands at the bottom, beside the leaves of the groups.
    for (auto& path : headings_) path.insert(path.begin(), headingDepth_ - path.size(), "");
    for (const Place& place : grid_.columns) {
      const Dimension& dimension = grid_.dimension(grid_.columnDimensions.back());
      const auto& node = dimension.nodes()[static_cast<size_t>(dimension.leafNode(place.back()))];
      isProbability_.push_back(isProbabilityColumn(node.label));
    }
  }

  std::string footnoteMarks(const Place& place) {
    const Dimension& dimension = grid_.dimension(grid_.columnDimensions.back());
    const auto& node = dimension.nodes()[static_cast<size_t>(dimension.leafNode(place.back()))];
    std::string marks;
    for (const LabelData& note : node.footnotes)
      marks += (marks.empty() ? " [" : ",") + notes_.mark(note.text);
    return marks.empty() ? marks : marks + ']';
  }

  void layOutRows() {
    for (const size_t d : grid_.rowDimensions) {
      const Dimension& dimension = grid_.dimension(d);
      stubHeadings_.push_back(printable(dimension.label().text));
      for (size_t i = 1; i < depthOf(dimension); ++i) stubHeadings_.emplace_back();
    }
    for (const std::string& heading : stubHeadings_) stubWidths_.push_back(displayWidth(heading));
    for (const Place& place : grid_.rows) {
      std::vector<std::string> labels;
      for (const LabelData* label : grid_.headings(grid_.rowDimensions, place)) {
        labels.push_back(printable(label->text));
        size_t& width = stubWidths_[labels.size() - 1];
        width = std::max(width, displayWidth(labels.back()));
      }
      stubs_.push_back(std::move(labels));
    }
  }

  void layOutCells() {
    widths_.assign(grid_.columns.size(), 0);
    for (size_t c = 0; c < widths_.size(); ++c) widths_[c] = displayWidth(headings_[c].back());
    for (const auto& row : grid_.cells) {
      std::vector<std::string> texts;
      for (size_t c = 0; c < row.size(); ++c) {
        texts.push_back(
            row[c] < 0 ? ""
                       : textOf(grid_.table.cell(static_cast<size_t>(row[c])), isProbability_[c]));
        widths_[c] = std::max(widths_[c], displayWidth(texts.back()));
      }
      cells_.push_back(std::move(texts));
    }
    for (size_t level = 0; level + 1 < headingDepth_; ++level) widenForGroups(level);
  }

  std::string textOf(const TableCell& cell, bool isProbability) {
    std::string text = cellText(cell, isProbability);
    if (cell.note >= 0) {
      text += '[' + notes_.mark(grid_.table.noteTexts()[static_cast<size_t>(cell.note)]) + ']';
    }
    return text;
  }

  /// The end of the run of columns that share the heading at this level.
  size_t runEnd(size_t level, size_t start) const {
    size_t end = start + 1;
    while (end < headings_.size() && !headings_[start][level].empty() &&
           std::equal(headings_[start].begin(),
                      headings_[start].begin() + static_cast<ptrdiff_t>(level) + 1,
                      headings_[end].begin())) {
      ++end;
    }
    return end;
  }

  size_t runWidth(size_t start, size_t end) const {
    size_t width = 2 * (end - start - 1);
    for (size_t c = start; c < end; ++c) width += widths_[c];
    return width;
  }

  void widenForGroups(size_t level) {
    for (size_t start = 0; start < headings_.size();) {
      const size_t end = runEnd(level, start);
      const size_t needed = displayWidth(headings_[start][level]);
      const size_t have = runWidth(start, end);
      if (needed > have) widths_[end - 1] += needed - have;
      start = end;
    }
  }

  size_t totalWidth() const {
    size_t width = 0;
    for (const size_t w : stubWidths_) width += w + 2;
    return width + runWidth(0, widths_.size());
  }

  void writeColumnHeadings(std::ostream& out) const {
    for (size_t level = 0; level < headingDepth_; ++level) {
      const bool last = level + 1 == headingDepth_;
      std::string line, rule;
      for (size_t i = 0; i < stubWidths_.size(); ++i) {
        line += padded(last ? stubHeadings_[i] : "", stubWidths_[i], false) + kGap;
        rule += std::string(stubWidths_[i] + 2, ' ');
      }
      for (size_t start = 0; start < headings_.size();) {
        const size_t end = last ? start + 1 : runEnd(level, start);
        const std::string& text = headings_[start][level];
        const size_t width = runWidth(start, end);
        const std::string gap = start == 0 ? "" : kGap;
        line += gap + (last ? padded(text, width, true) : centred(text, width));
        rule += gap + (text.empty() ? std::string(width, ' ') : repeated(kRule, width));
        start = end;
      }
      out << trimmed(line) << '\n';
      if (!last) out << trimmed(rule) << '\n';
    }
  }

  static std::string centred(const std::string& text, size_t width) {
    const size_t left = (width - std::min(width, displayWidth(text))) / 2;
    return padded(std::string(left, ' ') + text, width, false);
  }

  static std::string trimmed(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
  }

  void writeRows(std::ostream& out) const {
    for (size_t r = 0; r < stubs_.size(); ++r) {
      std::string line;
      bool same = r > 0;
      for (size_t i = 0; i < stubWidths_.size(); ++i) {
        // An outer label stands once, at the first of its rows.
        same = same && i + 1 < stubWidths_.size() && stubs_[r][i] == stubs_[r - 1][i];
        line += padded(same ? "" : stubs_[r][i], stubWidths_[i], false) + kGap;
      }
      for (size_t c = 0; c < widths_.size(); ++c) {
        line += (c == 0 ? "" : kGap) + padded(cells_[r][c], widths_[c], true);
      }
      out << trimmed(line) << '\n';
    }
  }

  Grid grid_;
  Footnotes notes_;
  size_t headingDepth_ = 0;
  std::vector<std::vector<std::string>> headings_;
  std::vector<bool> isProbability_;
  std::vector<std::string> stubHeadings_;
  std::vector<std::vector<std::string>> stubs_;
  std::vector<std::vector<std::string>> cells_;
  std::vector<size_t> stubWidths_;
  std::vector<size_t> widths_;
};

/// Lines of a message, the later ones indented.
void writeMessage(const DocumentMessage& message, std::ostream& out) {
  out << (message.severity == Severity::kError ? "Error: " : "Warning: ");
  size_t start = 0;
  for (;;) {
    const size_t end = std::min(message.text.find('\n', start), message.text.size());
    out << printable(message.text.substr(start, end - start)) << '\n';
    if (end >= message.text.size()) return;
    start = end + 1;
  }
}

}  // namespace

void renderText(const OutputDocument& document, std::ostream& out) {
  for (const auto& procedure : document.procedures()) {
    out << printable(procedure->title) << "\n\n";
    for (const DocumentMessage& message : procedure->messages) writeMessage(message, out);
    if (!procedure->messages.empty()) out << '\n';
    for (const auto& table : procedure->tables) TextTable(*table).write(out);
    for (const DocumentNote& note : procedure->notes) {
      out << printable(note.label) << ": " << printable(note.value) << '\n';
    }
    if (!procedure->notes.empty()) out << '\n';
  }
}

}  // namespace workbench
