/// How a design lists its methods: one table per family, whose order is the order of flags,
/// keywords and rows; and what the requested ones of a table give.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "module/math/interval.h"
#include "module/math/level.h"
#include "module/math/p_values.h"

namespace proportions {

template <typename Function>
struct Method {
  const char* keyword;
  const char* label;
  bool byDefault;
  Function function;
  /// The standard normal distribution is in it: a test shows a Z, an interval is missing where the
  /// critical value is.
  bool isNormal = true;
};

/// A bit per method, in the order of the design's table.
using MethodFlags = std::vector<bool>;

/// A requested method with its result, in flag order.
template <typename Result>
struct MethodRow {
  const char* label;
  bool isNormal;
  Result result;
};
using IntervalRows = std::vector<MethodRow<Bounds>>;
using TestRows = std::vector<MethodRow<TestResult>>;

/// Computes the flagged tests of a table, in flag order.
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

}  // namespace proportions
