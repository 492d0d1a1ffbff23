#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "host/constants.h"
#include "workbench/render/render.h"

namespace workbench {
namespace {

/// A text field. A text that a spreadsheet would run as a formula gets an apostrophe before it.
std::string field(const std::string& text) {
  std::string result = text;
  if (!result.empty() && std::string("=+-@\t\r").find(result[0]) != std::string::npos) {
    result.insert(0, 1, '\'');
  }
  if (result.find_first_of(",\"\r\n") == std::string::npos) return result;
  std::string escaped = "\"";
  for (const char c : result) escaped += c == '"' ? std::string("\"\"") : std::string(1, c);
  return escaped + '"';
}

std::string number(double value) {
  if (value == kSystemMissing) return "";
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  std::array<char, 32> buffer{};
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

std::string joined(const std::vector<std::string>& path) {
  std::string result;
  for (const std::string& text : path) result += (result.empty() ? "" : " / ") + text;
  return result;
}

/// The names that get a column each, in order of first appearance.
struct Columns {
  std::vector<std::string> splits;
  std::vector<std::string> dimensions;
};

void addName(std::vector<std::string>& names, const std::string& name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

Columns columnsOf(const OutputDocument& document) {
  Columns columns;
  for (const auto& procedure : document.procedures()) {
    for (const auto& table : procedure->tables) {
      for (const auto& [name, value] : table->split()) addName(columns.splits, name);
      for (const int axis : {0, 1}) {
        for (const size_t d : table->displayOrder(axis)) {
          const Dimension& dimension = table->dimensions()[d];
          addName(dimension.isSplit ? columns.splits : columns.dimensions, dimension.label().text);
        }
      }
    }
  }
  return columns;
}

/// One table: every leaf's field is made once and not per cell.
class TableRows {
 public:
  TableRows(const Table& table, const Columns& columns)
      : table_(table), start_(field(table.title().text)) {
    for (const std::string& name : columns.splits) addColumn(name, true);
    for (const std::string& name : columns.dimensions) addColumn(name, false);
    for (const std::string& note : table.noteTexts()) notes_.push_back(field(note));
  }

  void write(std::ostream& out) const {
    for (size_t cell = 0; cell < table_.cellCount(); ++cell) {
      out << start_;
      for (const Column& column : columns_) {
        out << ',';
        const int32_t leaf =
            column.dimension < 0 ? -1 : table_.leafOf(cell, static_cast<size_t>(column.dimension));
        out << (leaf < 0 ? column.constant : column.leaves[static_cast<size_t>(leaf)]);
      }
      const TableCell& content = table_.cell(cell);
      out << ',' << number(content.value) << ',';
      if (content.note >= 0) out << notes_[static_cast<size_t>(content.note)];
      out << '\n';
    }
  }

 private:
  struct Column {
    int dimension = -1;
    std::string constant;
    std::vector<std::string> leaves;
  };

  void addColumn(const std::string& name, bool isSplit) {
    Column column;
    for (const auto& [variable, value] : table_.split()) {
      if (isSplit && variable == name) column.constant = field(value);
    }
    for (size_t d = 0; d < table_.dimensions().size(); ++d) {
      const Dimension& dimension = table_.dimensions()[d];
      if (dimension.isSplit != isSplit || dimension.label().text != name) continue;
      column.dimension = static_cast<int>(d);
      for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
        column.leaves.push_back(field(joined(dimension.path(leaf))));
      }
    }
    columns_.push_back(std::move(column));
  }

  const Table& table_;
  std::string start_;
  std::vector<Column> columns_;
  std::vector<std::string> notes_;
};

}  // namespace

void renderCsv(const OutputDocument& document, std::ostream& out) {
  const Columns columns = columnsOf(document);
  out << "table";
  for (const auto* names : {&columns.splits, &columns.dimensions}) {
    for (const std::string& name : *names) out << ',' << field(name);
  }
  out << ",value,note\n";
  for (const auto& procedure : document.procedures()) {
    for (const auto& table : procedure->tables) TableRows(*table, columns).write(out);
  }
}

}  // namespace workbench
