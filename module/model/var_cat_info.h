/// What a pass over the data learns about one variable.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/data_source.h"

namespace proportions {

/// The category lists and counts stay empty in this command; developers see them in the dumps.
struct VarCatInfo {
  VarIndex varIndex = -1;
  bool isString = false;
  std::vector<double> numericValues;
  std::vector<std::string> stringValues;
  std::vector<int32_t> categoryCounts;
  int32_t totalCount = 0;
  std::vector<double> weightedCounts;
  double weightedTotal = 0.0;
  bool hasValidValue = false;  ///< at least one value was not missing
  double minValue = kSystemMissing;
  double maxValue = kSystemMissing;
  double midPoint = kSystemMissing;
  std::string minString;
  std::string maxString;
  /// The extremes are of seen values: this group's, or in a resample its base group's. Tells an
  /// empty string that is the smallest from one that was never set.
  bool extremesKnown = false;
};

}  // namespace proportions
