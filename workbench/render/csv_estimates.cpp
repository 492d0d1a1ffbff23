#include "workbench/render/csv_estimates.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>

#include "host/constants.h"
#include "workbench/render/csv_fields.h"
#include "workbench/render/csv_subject.h"
#include "workbench/results/grid.h"

namespace workbench {
namespace {

constexpr std::string_view kBootstrapKey = "Bootstrap";
constexpr std::string_view kPooledKey = "Pooled: ^1";

/// A column of the file with the path of keys of the table's column.
using Column = std::pair<std::string_view, std::string_view>;

constexpr std::array<Column, 7> kBootstrapColumns{{{"quantity", ""},
                                                   {"statistic", "Statistic"},
                                                   {"bias", "Bias"},
                                                   {"boot_lower", "Percentile/Lower"},
                                                   {"boot_upper", "Percentile/Upper"},
                                                   {"bca_lower", "BCa/Lower"},
                                                   {"bca_upper", "BCa/Upper"}}};

constexpr std::array<Column, 8> kPooledColumns{{{"quantity", ""},
                                                {"statistic", "Statistic"},
                                                {"within", "Within Variance"},
                                                {"between", "Between Variance"},
                                                {"df", "Degrees of Freedom"},
                                                {"riv", "Relative Increase in Variance"},
                                                {"fmi", "Fraction of Missing Information"},
                                                {"re", "Relative Efficiency"}}};

template <size_t count>
std::string_view pathOf(const std::array<Column, count>& columns, std::string_view name) {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&](const Column& column) { return column.first == name; });
  return found == columns.end() ? std::string_view() : found->second;
}

bool isPooled(const Table& table) { return table.title().key == kPooledKey; }

std::string_view designOf(const DocumentProcedure& procedure) {
  for (const auto& table : procedure.tables) {
    if (const auto kind = tableKindOf(table->title().key)) return csvNameOf(kind->design);
  }
  return "";
}

/// One table, row by row.
class EstimateRows {
 public:
  explicit EstimateRows(const Table& table) : table_(table), grid_(table) {
    for (size_t column = 0; column < grid_.columns().placeCount(); ++column) {
      columns_[columnPath(column)] = column;
    }
    const std::vector<size_t>& dimensions = grid_.rows().dimensions();
    for (size_t i = 0; i < dimensions.size(); ++i) {
      const Dimension& dimension = table.dimensions()[dimensions[i]];
      if (dimension.isSplit) splits_.push_back(i);
      if (dimension.label().key == "Variables") variables_ = i;
      if (dimension.label().key == "Quantity") quantities_ = i;
    }
  }

  size_t count() const { return grid_.rows().placeCount(); }

  std::string splitText(size_t row, size_t split) const {
    if (split < table_.split().size()) return table_.split()[split].second;
    if (split >= splits_.size()) return "";
    const DimensionNode* found = node(row, splits_[split]);
    return found == nullptr ? "" : found->label.text;
  }

  /// The quantity, and what it is of where the design has several of its kind.
  std::pair<const LabelData*, const LabelData*> quantity(size_t row) const {
    const DimensionNode* leaf = node(row, quantities_);
    if (leaf->parent == 0) return {&leaf->label, nullptr};
    return {&dimension(quantities_).node(leaf->parent).label, &leaf->label};
  }

  ResultSubject subject(size_t row) const {
    ResultSubject subject;
    subject.variable = &node(row, variables_)->label;
    const LabelData* member = quantity(row).second;
    if (member == nullptr) return subject;
    if (member->variables.empty()) {
      subject.group = member;
      return subject;
    }
    const std::vector<std::string>& pair = subject.variable->variables;
    if (pair.size() == 2) subject.measurement = pair[1] == member->variables[0] ? 2 : 1;
    subject.variable = member;
    return subject;
  }

  double value(size_t row, std::string_view path) const {
    const TableCell* found = cell(row, path);
    return found == nullptr ? kSystemMissing : found->value;
  }

  /// The confidence level, which stands on the groups of bounds.
  std::optional<double> level() const {
    const Dimension& statistics = table_.dimensions()[grid_.columns().dimensions().front()];
    for (const DimensionNode& node : statistics.nodes()) {
      if (node.label.number) return node.label.number;
    }
    return std::nullopt;
  }

  std::string notes(size_t row) const {
    std::string joined;
    std::vector<int32_t> seen;
    for (size_t column = 0; column < grid_.columns().placeCount(); ++column) {
      const uint32_t index = grid_.cell(row, column);
      const int32_t note = index == Grid::kNoCell ? -1 : table_.cell(index).note;
      if (note < 0 || std::find(seen.begin(), seen.end(), note) != seen.end()) continue;
      seen.push_back(note);
      joined += (joined.empty() ? "" : "; ") + table_.notes()[static_cast<size_t>(note)].text;
    }
    return joined;
  }

 private:
  const Dimension& dimension(size_t rowDimension) const {
    return table_.dimensions()[grid_.rows().dimensions()[rowDimension]];
  }

  const DimensionNode* node(size_t row, size_t rowDimension) const {
    const int32_t index = grid_.rows().node(row, rowDimension);
    return index < 0 ? nullptr : &dimension(rowDimension).node(index);
  }

  std::string columnPath(size_t column) const {
    const Dimension& statistics = table_.dimensions()[grid_.columns().dimensions().front()];
    const DimensionNode& leaf = statistics.node(grid_.columns().node(column, 0));
    return leaf.parent == 0 ? leaf.label.key
                            : statistics.node(leaf.parent).label.key + '/' + leaf.label.key;
  }

  const TableCell* cell(size_t row, std::string_view path) const {
    const auto column = columns_.find(path);
    if (column == columns_.end()) return nullptr;
    const uint32_t index = grid_.cell(row, column->second);
    return index == Grid::kNoCell ? nullptr : &table_.cell(index);
  }

  const Table& table_;
  Grid grid_;
  std::map<std::string, size_t, std::less<>> columns_;
  std::vector<size_t> splits_;
  size_t variables_ = 0;
  size_t quantities_ = 0;
};

}  // namespace

bool isEstimateTable(const Table& table) {
  return table.title().key == kBootstrapKey || isPooled(table);
}

std::vector<std::string_view> estimateColumns(const OutputDocument& document) {
  std::vector<std::string_view> names;
  const auto add = [&](const auto& columns) {
    for (const Column& column : columns) {
      if (std::find(names.begin(), names.end(), column.first) == names.end()) {
        names.push_back(column.first);
      }
    }
  };
  for (const auto& procedure : document.procedures()) {
    for (const auto& table : procedure->tables) {
      if (table->title().key == kBootstrapKey) add(kBootstrapColumns);
      if (isPooled(*table)) add(kPooledColumns);
    }
  }
  return names;
}

void writeEstimates(const Table& table, const DocumentProcedure& procedure,
                    const std::string& command, size_t splitCount, const std::string& grouping,
                    const std::vector<std::string_view>& columns, Writer& out) {
  const bool pooled = isPooled(table);
  const EstimateRows rows(table);
  const auto writeRow = [&](size_t row, std::string_view method, std::string_view bounds) {
    out << command << ',' << designOf(procedure) << ',' << (pooled ? "pooled" : "bootstrap");
    for (size_t i = 0; i < splitCount; ++i) out << ',' << csvText(rows.splitText(row, i));
    writeCsvSubject(rows.subject(row), grouping, out);
    out << method;
    out << ",,,,,,";  // successes to difference
    out << csvNumber(rows.value(row, "Std. Error")) << ",,,,"
        << (rows.level() ? csvNumber(*rows.level()) : "");
    const std::string group(bounds);
    out << ',' << csvNumber(rows.value(row, group + "/Lower")) << ','
        << csvNumber(rows.value(row, group + "/Upper"));
    for (const std::string_view column : columns) {
      out << ',';
      if (column == "quantity") {
        out << csvText(rows.quantity(row).first->key);
      } else {
        const std::string_view path =
            pooled ? pathOf(kPooledColumns, column) : pathOf(kBootstrapColumns, column);
        if (!path.empty()) out << csvNumber(rows.value(row, path));
      }
    }
    out << ',' << csvText(rows.notes(row)) << '\n';
  };
  for (size_t row = 0; row < rows.count(); ++row) {
    writeRow(row, pooled ? "RUBIN" : "", pooled ? "Rubin" : "");
    if (!IsSystemMissing(rows.value(row, "Wilson/Lower"))) writeRow(row, "WILSON_SCORE", "Wilson");
  }
}

}  // namespace workbench
