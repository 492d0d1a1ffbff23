/// How a design lists its methods: one table per family, whose order is the order of flags,
/// keywords and rows.
#pragma once

namespace proportions {

/// A confidence interval. `Counts` is the design's record of counts; see the design's intervals.h.
template <typename Function>
struct Method {
  const char* keyword;
  const char* label;
  bool byDefault;
  Function function;
  bool hasStatistic = true;  ///< tests only: shows a Z
};

}  // namespace proportions
