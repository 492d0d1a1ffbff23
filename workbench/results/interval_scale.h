/// The common axis of a table's intervals.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "workbench/results/result_rows.h"

namespace workbench {

/// An axis from `low` to `high`, both multiples of `step`.
struct IntervalScale {
  double low;
  double high;
  double step;
  int decimals;  ///< that a tick's number needs

  size_t tickCount() const;
  double tick(size_t number) const;
  /// A tick's number; in percent with `percent`.
  std::string tickText(size_t number, bool percent) const;
  /// Where a value stands, from 0 (low) to 1 (high).
  double place(double value) const { return (value - low) / (high - low); }
};

/// What an interval is about: a point between two bounds, each of which may be missing or NaN.
struct DrawnInterval {
  double estimate;
  double lower;
  double upper;
  bool isWhole() const;
};

DrawnInterval drawnInterval(const ResultRows& rows, size_t row);

/// The value that a table's intervals are compared with: 0 for differences; the test value of the
/// same command's tests, when there are any, for proportions.
std::optional<double> referenceOf(const ResultRows& rows, const DocumentProcedure& procedure);

/// The axis that takes the first `rowCount` intervals of a table and the reference, with at most
/// `mostTicks` ticks; nothing when there is nothing to draw.
std::optional<IntervalScale> scaleOf(const ResultRows& rows, size_t rowCount,
                                     std::optional<double> reference, size_t mostTicks);

}  // namespace workbench
