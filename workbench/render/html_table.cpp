#include "workbench/render/html_table.h"

#include <algorithm>
#include <string>
#include <vector>

#include "workbench/render/cell_texts.h"
#include "workbench/render/footnotes.h"
#include "workbench/render/html_text.h"
#include "workbench/render/row_labels.h"
#include "workbench/results/grid.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr size_t kLongTable = 400;  // rows from which on a table is written in parts
constexpr size_t kRowsOfPart = 200;
constexpr std::string_view kFigureSpace = "\u2007";  // as wide as a digit

/// Characters from the decimal point on.
size_t restLength(const std::string& text) {
  const size_t point = text.find('.');
  return point == std::string::npos || text.size() == 1 ? 0 : text.size() - point;
}

class HtmlTable {
 public:
  HtmlTable(const Table& table, const RenderOptions& options, std::string id, Writer& out)
      : grid_(table), texts_(table, options), labels_(grid_), id_(std::move(id)), out_(out) {
    folded_ = labels_.levels() > 1 ? 1 : 0;
    for (size_t row = 0; row < labels_.rowCount(); ++row) {
      shared_.push_back(labels_.sharedLevels(row));
    }
    for (size_t column = 0; column < grid_.columns().placeCount(); ++column) {
      paths_.push_back(pathOf(column));
      headLevels_ = std::max(headLevels_, paths_.back().size());
    }
    for (size_t row = 0; row < labels_.rowCount(); ++row) numberNotes(row);
    referred_.resize(footnotes_.texts().size());
    findRests();
  }

  void write() {
    const size_t rows = labels_.rowCount();
    const size_t part = rows > kLongTable ? kRowsOfPart : std::max<size_t>(rows, 1);
    out_ << "<section class=\"table\" id=\"" << id_ << "\">\n<h3 id=\"" << id_ << "h\">"
         << htmlText(tableHeading(grid_.table())) << "</h3>\n";
    for (size_t start = 0; start < rows; start += part) {
      writePart(start, std::min(rows, start + part));
    }
    writeFootnotes();
    out_ << "</section>\n";
  }

 private:
  struct Heading {
    std::string text;  // escaped
    std::vector<size_t> notes;
  };

  std::vector<Heading> pathOf(size_t column) {
    const GridAxis& axis = grid_.columns();
    std::vector<Heading> path;
    for (size_t d = 0; d < axis.dimensions().size(); ++d) {
      for (const std::string_view label : axis.path(column, d)) {
        path.push_back({htmlText(shownCategory(label)), {}});
      }
      const int32_t node = axis.node(column, d);
      if (node < 0) continue;
      const Dimension& dimension = grid_.table().dimensions()[axis.dimensions()[d]];
      for (const LabelData& note : dimension.footnotes(node)) {
        path.back().notes.push_back(footnotes_.numberOf(note.text));
      }
    }
    if (path.empty()) path.emplace_back();
    return path;
  }

  const std::string* noteOf(uint32_t cell) const {
    const int32_t note = cell == Grid::kNoCell ? -1 : grid_.table().cell(cell).note;
    return note < 0 ? nullptr : &grid_.table().notes()[static_cast<size_t>(note)].text;
  }

  void numberNotes(size_t row) {
    for (size_t column = 0; column < paths_.size(); ++column) {
      if (const std::string* note = noteOf(grid_.cell(row, column))) footnotes_.numberOf(*note);
    }
  }

  /// How far numbers reach past their point, by column.
  void findRests() {
    rests_.resize(paths_.size());
    for (size_t row = 0; row < labels_.rowCount(); ++row) {
      for (size_t column = 0; column < paths_.size(); ++column) {
        const uint32_t cell = grid_.cell(row, column);
        if (cell == Grid::kNoCell) continue;
        rests_[column] = std::max(rests_[column], restLength(texts_(cell)));
      }
    }
  }

  void writePart(size_t start, size_t end) {
    const size_t all = labels_.rowCount();
    const bool isPart = end - start < all;
    out_ << "<div class=\"scroll" << (isPart ? " part" : "")
         << "\" tabindex=\"0\" role=\"region\" aria-labelledby=\"" << id_
         << "h\"><table aria-labelledby=\"" << id_ << "h\">";
    if (isPart) {
      out_ << "<caption>Rows " << std::to_string(start + 1) << " to " << std::to_string(end)
           << " of " << std::to_string(all) << "</caption>";
    }
    out_ << '\n';
    writeHead();
    out_ << "<tbody>\n";
    for (size_t row = start; row < end; ++row) {
      if (folded_ > 0 && (row == start || shared_[row] < folded_)) writeSection(row, row > start);
      writeRow(row, start, end);
    }
    out_ << "</tbody></table></div>\n";
  }

  /// The outermost label as a row of its own, which heads a body of rows.
  void writeSection(size_t row, bool startsBody) {
    if (startsBody) out_ << "</tbody><tbody>\n";
    out_ << "<tr><th scope=\"rowgroup\" colspan=\""
         << std::to_string(labels_.levels() - folded_ + paths_.size()) << "\">"
         << htmlEscaped(labels_.joined(row, folded_)) << "</th></tr>\n";
  }

  /// A heading that stands under no group reaches over the levels of groups.
  void writeHead() {
    out_ << "<thead>";
    for (size_t level = 0; level < headLevels_; ++level) {
      out_ << "<tr>";
      if (level == 0) writeTitles();
      for (size_t column = 0; column < paths_.size();) {
        const size_t above = headLevels_ - paths_[column].size();
        if (level > 0 && level <= above) {  // the heading from above reaches down to here
          ++column;
          continue;
        }
        const size_t depth = level == 0 ? 0 : level - above;
        const bool isLeaf = depth + 1 == paths_[column].size();
        const size_t end = isLeaf ? column + 1 : spanEnd(column, depth);
        writeHeading(paths_[column][depth], end - column, level == 0 ? above + 1 : 1, isLeaf);
        column = end;
      }
      out_ << "</tr>\n";
    }
    out_ << "</thead>\n";
  }

  void writeTitles() {
    for (size_t level = folded_; level < labels_.levels();) {
      size_t next = level + 1;
      while (next < labels_.levels() && labels_.title(next, folded_).empty()) ++next;
      out_ << "<th scope=\"col\" class=\"label\"" << span("colspan", next - level)
           << span("rowspan", headLevels_) << '>' << htmlEscaped(labels_.title(level, folded_))
           << "</th>";
      level = next;
    }
  }

  static std::string span(const char* name, size_t count) {
    return count > 1 ? std::string(" ") + name + "=\"" + std::to_string(count) + '"' : "";
  }

  size_t spanEnd(size_t start, size_t depth) const {
    const auto same = [&](size_t column) {
      if (paths_[column].size() != paths_[start].size()) return false;
      for (size_t i = 0; i <= depth; ++i) {
        if (paths_[column][i].text != paths_[start][i].text) return false;
      }
      return true;
    };
    size_t end = start + 1;
    while (end < paths_.size() && same(end)) ++end;
    return end;
  }

  void writeHeading(const Heading& heading, size_t columns, size_t rows, bool isLeaf) {
    out_ << "<th scope=\"" << (isLeaf ? "col" : "colgroup") << '"' << span("colspan", columns)
         << span("rowspan", rows) << '>' << heading.text;
    for (const size_t note : heading.notes) writeMark(note);
    out_ << "</th>";
  }

  void writeMark(size_t note) {
    const std::string number = std::to_string(note + 1);
    out_ << "<sup><a href=\"#" << id_ << 'n' << number << '"';
    if (!referred_[note]) out_ << " id=\"" << id_ << 'r' << number << '"';
    referred_[note] = true;
    out_ << '>' << Footnotes::letters(note) << "</a></sup>";
  }

  void writeRow(size_t row, size_t start, size_t end) {
    out_ << "<tr>";
    const std::vector<const std::string*> labels = labels_.labelsOf(row);
    for (size_t level = folded_; level < labels.size(); ++level) {
      const bool isLast = level + 1 == labels.size();
      if (!isLast && row > start && shared_[row] > level) continue;
      size_t next = row + 1;
      while (!isLast && next < end && shared_[next] > level) ++next;
      if (labels[level]->empty()) {
        out_ << "<td" << span("rowspan", next - row) << "></td>";
        continue;
      }
      out_ << "<th scope=\"" << (next - row > 1 ? "rowgroup" : "row") << '"'
           << span("rowspan", next - row) << '>' << htmlEscaped(*labels[level]) << "</th>";
    }
    for (size_t column = 0; column < paths_.size(); ++column) {
      writeCell(grid_.cell(row, column), rests_[column]);
    }
    out_ << "</tr>\n";
  }

  void writeCell(uint32_t cell, size_t rest) {
    out_ << "<td>";
    if (cell == Grid::kNoCell) {
      out_ << "</td>";
      return;
    }
    const std::string text = texts_(cell);
    out_ << htmlEscaped(text);
    for (size_t i = restLength(text); i < rest; ++i) out_ << kFigureSpace;
    if (const std::string* note = noteOf(cell)) writeMark(footnotes_.numberOf(*note));
    out_ << "</td>";
  }

  void writeFootnotes() {
    if (footnotes_.texts().empty()) return;
    out_ << "<div class=\"footnotes\">\n";
    for (size_t i = 0; i < footnotes_.texts().size(); ++i) {
      const std::string number = std::to_string(i + 1);
      out_ << "<p id=\"" << id_ << 'n' << number << "\"><a href=\"#" << id_ << 'r' << number
           << "\" aria-label=\"Back to the first mark of note " << Footnotes::letters(i) << "\">"
           << Footnotes::letters(i) << ".</a> " << htmlText(footnotes_.texts()[i]) << "</p>\n";
    }
    out_ << "</div>\n";
  }

  const Grid grid_;
  const CellTexts texts_;
  const RowLabels labels_;
  const std::string id_;
  Writer& out_;
  size_t folded_ = 0;                        // outer levels that stand in rows of their own
  std::vector<size_t> shared_;               // levels that a row shares with the one before
  std::vector<std::vector<Heading>> paths_;  // of the columns
  size_t headLevels_ = 1;
  std::vector<size_t> rests_;
  Footnotes footnotes_;
  std::vector<bool> referred_;  // notes whose first mark has been written
};

}  // namespace

void writeHtmlTable(const Table& table, const RenderOptions& options, const std::string& id,
                    Writer& out) {
  HtmlTable(table, options, id, out).write();
}

}  // namespace workbench
