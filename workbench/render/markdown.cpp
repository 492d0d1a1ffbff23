#include <string>

#include "workbench/render/grid.h"
#include "workbench/render/number_text.h"
#include "workbench/render/render.h"
#include "workbench/render/report_text.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

/// A text that reads as itself: everything that Markdown or HTML would take for a sign is escaped.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : printable(text)) {
    if (c == '<') {
      result += "&lt;";
    } else if (c == '>') {
      result += "&gt;";
    } else if (c == '&') {
      result += "&amp;";
    } else {
      if (std::string("\\`*_{}[]#|~$!").find(c) != std::string::npos) result += '\\';
      result += c;
    }
  }
  return result;
}

std::string joined(const std::vector<const LabelData*>& labels) {
  std::string result;
  for (const LabelData* label : labels) {
    if (!label->text.empty()) result += (result.empty() ? "" : " / ") + label->text;
  }
  return result;
}

void writeHeader(const Grid& grid, Footnotes& notes, std::ostream& out) {
  std::string alignment = "|";
  out << '|';
  for (const size_t d : grid.rowDimensions) {
    out << ' ' << escaped(grid.dimension(d).label().text) << " |";
    alignment += " --- |";
  }
  for (const Place& place : grid.columns) {
    out << ' ' << escaped(joined(grid.headings(grid.columnDimensions, place)));
    const Dimension& dimension = grid.dimension(grid.columnDimensions.back());
    const auto& node = dimension.nodes()[static_cast<size_t>(dimension.leafNode(place.back()))];
    for (const LabelData& note : node.footnotes)
      out << " <sup>" << notes.mark(note.text) << "</sup>";
    out << " |";
    alignment += " ---: |";
  }
  out << '\n' << alignment << '\n';
}

void writeRow(const Grid& grid, size_t row, Footnotes& notes, std::ostream& out) {
  out << '|';
  for (size_t i = 0; i < grid.rowDimensions.size(); ++i) {
    const Place place{grid.rows[row][i]};
    out << ' ' << escaped(joined(grid.headings({grid.rowDimensions[i]}, place))) << " |";
  }
  for (size_t c = 0; c < grid.columns.size(); ++c) {
    const int64_t index = grid.cells[row][c];
    if (index >= 0) {
      const TableCell& cell = grid.table.cell(static_cast<size_t>(index));
      const Dimension& dimension = grid.dimension(grid.columnDimensions.back());
      const auto& node =
          dimension.nodes()[static_cast<size_t>(dimension.leafNode(grid.columns[c].back()))];
      out << ' ' << escaped(cellText(cell, isProbabilityColumn(node.label)));
      if (cell.note >= 0) {
        out << " <sup>" << notes.mark(grid.table.noteTexts()[static_cast<size_t>(cell.note)])
            << "</sup>";
      }
    }
    out << " |";
  }
  out << '\n';
}

void writeTable(const Table& table, std::ostream& out) {
  const Grid grid(table);
  Footnotes notes;
  out << "### " << escaped(tableHeading(table)) << "\n\n";
  writeHeader(grid, notes, out);
  for (size_t row = 0; row < grid.rows.size(); ++row) writeRow(grid, row, notes, out);
  out << '\n';
  for (size_t i = 0; i < notes.texts().size(); ++i) {
    out << "<sup>" << Footnotes::letter(i) << "</sup> " << escaped(notes.texts()[i]) << "\n\n";
  }
}

/// Lines of a message inside a list item: the first as text, what follows as it stands.
void writeMessage(const DocumentMessage& message, std::ostream& out) {
  const size_t end = message.text.find('\n');
  out << "- **" << (message.severity == Severity::kError ? "Error" : "Warning") << "** "
      << escaped(message.text.substr(0, end)) << '\n';
  if (end == std::string::npos) return;
  out << "\n  ```\n";
  for (size_t start = end + 1; start <= message.text.size();) {
    const size_t stop = std::min(message.text.find('\n', start), message.text.size());
    out << "  " << printable(message.text.substr(start, stop - start)) << '\n';
    start = stop + 1;
  }
  out << "  ```\n";
}

}  // namespace

void renderMarkdown(const OutputDocument& document, std::ostream& out) {
  for (const auto& procedure : document.procedures()) {
    out << "## " << escaped(procedure->title) << "\n\n";
    for (const DocumentMessage& message : procedure->messages) writeMessage(message, out);
    if (!procedure->messages.empty()) out << '\n';
    for (const auto& table : procedure->tables) writeTable(*table, out);
    for (const DocumentNote& note : procedure->notes) {
      out << "- " << escaped(note.label) << ": " << escaped(note.value) << '\n';
    }
    if (!procedure->notes.empty()) out << '\n';
  }
}

}  // namespace workbench
