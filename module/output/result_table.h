/// The skeleton that all result tables share: a title, dimensions in their places, cells with
/// notes.
#pragma once

#include <cmath>
#include <utility>
#include <vector>

#include "host/output.h"
#include "module/driver/algorithm.h"
#include "module/math/interval.h"
#include "module/math/normal_test.h"
#include "module/output/texts.h"

namespace proportions {

/// A requested method with its result, in flag order.
template <typename Result>
struct MethodRow {
  const char* label;
  bool isNormal;
  Result result;
};
using IntervalRows = std::vector<MethodRow<Bounds>>;
using TestRows = std::vector<MethodRow<TestResult>>;

/// Computes the flagged methods of a table, in flag order.
template <typename Table, typename... Arguments>
auto requestedResults(const Table& table, const MethodFlags& flags, const Arguments&... arguments) {
  using Result = decltype(table.front().function(arguments...));
  std::vector<MethodRow<Result>> rows;
  for (size_t i = 0; i < table.size(); ++i) {
    if (!flags[i]) continue;
    rows.push_back({table[i].label, table[i].isNormal, table[i].function(arguments...)});
  }
  return rows;
}

/// The same for intervals. Those that use the critical value are missing where it is.
template <typename Table, typename Counts>
IntervalRows requestedIntervals(const Table& table, const MethodFlags& flags, const Counts& counts,
                                const Level& level) {
  IntervalRows rows = requestedResults(table, flags, counts, level);
  for (auto& row : rows) {
    if (row.isNormal && std::isnan(level.z)) row.result = {};
  }
  return rows;
}

/// A text handed to the host's output as it stands.
BpString keyText(const char* text);

/// One of the command's tables, asked of the procedure's heading by its title. Asking again for the
/// next variable or split group gives the same table.
class ResultTable {
 public:
  /// `missingNote` is the note of a cell whose value could not be computed.
  ResultTable(PRPAlgorithm& analysis, const char* title, const char* missingNote);

  /// Adds the first row dimension, the one inside "Variables".
  BpDimension& addRowDimension(const BpLabel& label);
  /// Adds "Variables" and "Statistics". `alone` when no other row dimension stands inside
  /// "Variables".
  void addVariablesAndStatistics(bool alone = false);
  BpDimension& variables() { return *variables_; }
  BpDimension& statistics() { return *statistics_; }

  /// Cells of the current row under "Statistics" or one of its groups.
  void addCount(BpGroup& group, const char* label, double value);
  void addStatistic(BpGroup& group, const char* label, double value);
  /// The same, with the table's note when the value is missing.
  void addNotedStatistic(BpGroup& group, const char* label, double value);
  BpGroup& statisticsGroup(const BpLabel& label);

  void addIntervalCells(const char* groupTemplate, const Bounds& bounds);
  /// The Z column is made for every test, so that the columns keep their order; a test without a
  /// statistic has no cell in it.
  void addTestCells(const MethodRow<TestResult>& row);

 private:
  PRPAlgorithm& analysis_;
  const char* missingNote_;
  BpPivotTable& table_;
  BpDimension* variables_ = nullptr;
  BpDimension* statistics_ = nullptr;
};

}  // namespace proportions
