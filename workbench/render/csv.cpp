#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/render/cell_texts.h"
#include "workbench/render/render.h"
#include "workbench/render/writer.h"

namespace workbench {
namespace {

using Names = std::vector<std::string>;

/// A text field. A text that a spreadsheet would run as a formula gets an apostrophe before it.
std::string field(std::string_view text) {
  constexpr std::string_view kFormulaStarts = "=+-@\t\r";
  const bool isFormula = !text.empty() && kFormulaStarts.find(text[0]) != std::string_view::npos;
  std::string result = isFormula ? "'" : "";
  result += text;
  if (result.find_first_of(",\"\r\n") == std::string::npos) return result;
  std::string quoted = "\"";
  for (const char c : result) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string joined(const std::vector<std::string_view>& path) {
  std::string result;
  for (const std::string_view text : path) {
    if (!result.empty()) result += " / ";
    result += text;
  }
  return result;
}

/// The names that get a column each, in order of first appearance.
struct Columns {
  Names splits;
  Names dimensions;
};

void addName(Names& names, const std::string& name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

void addColumnsOf(const Table& table, Columns& columns) {
  for (const auto& [name, value] : table.split()) addName(columns.splits, name);
  for (const int axis : {0, 1}) {
    for (const size_t d : table.displayOrder(axis)) {
      const Dimension& dimension = table.dimensions()[d];
      addName(dimension.isSplit ? columns.splits : columns.dimensions, dimension.label().text);
    }
  }
}

/// The names of all columns; one that is taken already gets a number.
Names headerOf(const Columns& columns) {
  Names taken{"table", "value", "note"};
  Names header{"table"};
  for (const Names* names : {&columns.splits, &columns.dimensions}) {
    for (const std::string& name : *names) {
      std::string own = name;
      for (int i = 2; std::find(taken.begin(), taken.end(), own) != taken.end(); ++i) {
        own = name + " (" + std::to_string(i) + ")";
      }
      taken.push_back(own);
      header.push_back(own);
    }
  }
  header.insert(header.end(), {"value", "note"});
  return header;
}

/// The rows of one table. A leaf's field is made once and not for every cell.
class TableRows {
 public:
  TableRows(const Table& table, const Columns& columns)
      : table_(table), start_(field(table.title().text)) {
    for (const std::string& name : columns.splits) addColumn(name, true);
    for (const std::string& name : columns.dimensions) addColumn(name, false);
    for (const CellNoteText& note : table.notes()) notes_.push_back(field(note.text));
  }

  void write(Writer& out) const {
    for (size_t cell = 0; cell < table_.cellCount(); ++cell) {
      out << start_;
      for (const Column& column : columns_) out << ',' << textAt(column, cell);
      const TableCell& content = table_.cell(cell);
      out << ',' << exactNumber(content.value) << ',';
      if (content.note >= 0) out << notes_[static_cast<size_t>(content.note)];
      out << '\n';
    }
  }

 private:
  struct Column {
    bool hasDimension = false;
    size_t dimension = 0;
    std::string constant;  // of a table that has no such dimension
    Names leaves;
  };

  const std::string& textAt(const Column& column, size_t cell) const {
    const int32_t leaf = column.hasDimension ? table_.leafOf(cell, column.dimension) : -1;
    return leaf < 0 ? column.constant : column.leaves[static_cast<size_t>(leaf)];
  }

  void addColumn(const std::string& name, bool isSplit) {
    Column column;
    for (const auto& [variable, value] : table_.split()) {
      if (isSplit && variable == name) column.constant = field(value);
    }
    for (size_t d = 0; d < table_.dimensions().size(); ++d) {
      const Dimension& dimension = table_.dimensions()[d];
      if (dimension.isSplit != isSplit || dimension.label().text != name) continue;
      column.hasDimension = true;
      column.dimension = d;
      for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
        column.leaves.push_back(field(joined(dimension.path(leaf))));
      }
    }
    columns_.push_back(std::move(column));
  }

  const Table& table_;
  std::string start_;
  std::vector<Column> columns_;
  Names notes_;
};

}  // namespace

void renderCsv(const OutputDocument& document, std::ostream& stream) {
  Columns columns;
  for (const auto& procedure : document.procedures()) {
    for (const auto& table : procedure->tables) addColumnsOf(*table, columns);
  }
  Writer out(stream);
  std::string line;
  for (const std::string& name : headerOf(columns)) line += (line.empty() ? "" : ",") + field(name);
  out << line << '\n';
  for (const auto& procedure : document.procedures()) {
    for (const auto& table : procedure->tables) TableRows(*table, columns).write(out);
  }
  out.finish();
}

}  // namespace workbench
