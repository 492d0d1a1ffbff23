#include "workbench/odbc/counting_statement.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace workbench {
namespace {

std::string shown(const Dialect& dialect, const SelectedColumn& selected) {
  return dialect.shown(*selected.column, selected.asText);
}

/// The expressions of a weight that the server rounds.
struct WeightTerms {
  WeightTerms(const Dialect& dialect, const ServerColumn& column)
      : number(column.floating ? column.quoted
                               : fmt::format(fmt::runtime(dialect.asDouble), column.quoted)),
        sound(dialect.soundWeight(column)),
        odd(dialect.oddWeight(column)),
        rounded(fmt::format("CASE WHEN {0} >= 0.5{1} THEN {2} END", number, sound,
                            dialect.floor(number + " + 0.5"))) {}

  std::vector<std::string> sums(const Dialect& dialect) const {
    const std::string parts = fmt::format("{} * {}", number, kWeightParts);
    const std::string whole = dialect.floor(parts);
    const std::string positive = fmt::format("CASE WHEN {} > 0{} THEN", number, sound);
    return {dialect.sum(fmt::format("{} {} END", positive, whole)),
            dialect.sum(fmt::format("{} {} - {} END", positive, parts, whole)),
            dialect.sum(fmt::format("CASE WHEN {0} < 0 THEN {0} END", number)),
            odd.empty() ? "0" : dialect.sum(fmt::format("CASE WHEN {} THEN 1 ELSE 0 END", odd))};
  }

  std::string number;
  std::string sound;
  std::string odd;
  std::string rounded;
};

}  // namespace

bool canRound(const ServerColumn& column) {
  return column.kind == ServerKind::kNumber || column.kind == ServerKind::kZeroOne ||
         (column.kind == ServerKind::kMixed && !column.moments);
}

std::string casesStatement(const Dialect& dialect, const Selection& selection,
                           const std::string& relation) {
  std::vector<std::string> values;
  for (const SelectedColumn& selected : selection.columns) {
    values.push_back(shown(dialect, selected));
  }
  if (values.empty()) values.emplace_back("1");  // cases count even when nothing is looked at
  return fmt::format("SELECT {} FROM {}", fmt::join(values, ", "), relation);
}

std::optional<std::string> countingStatement(const Dialect& dialect, const Selection& selection,
                                             const std::string& relation) {
  std::vector<std::string> values;
  std::vector<std::string> groups;
  for (const SelectedColumn& selected : selection.columns) {
    std::string group = dialect.grouped(*selected.column);
    if (group.empty()) return std::nullopt;
    values.push_back(dialect.anyOf(*selected.column, shown(dialect, selected)));
    groups.push_back(std::move(group));
  }
  std::vector<std::string> sums = {"COUNT(*)"};
  if (selection.weight != nullptr) {
    const WeightTerms weight(dialect, *selection.weight);
    values.push_back(weight.rounded);
    groups.push_back(weight.rounded);
    for (std::string& sum : weight.sums(dialect)) sums.push_back(std::move(sum));
  }
  values.insert(values.end(), sums.begin(), sums.end());
  std::string statement = fmt::format("SELECT {} FROM {}", fmt::join(values, ", "), relation);
  if (groups.empty()) return statement;
  statement += fmt::format(" GROUP BY {}", fmt::join(groups, ", "));
  if (dialect.limit) statement += fmt::format(" LIMIT {}", kMostCombinations + 1);
  return statement;
}

}  // namespace workbench
