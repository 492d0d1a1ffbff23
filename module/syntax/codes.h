/// Codes that the specification record and its readers share.
#pragma once

#include <cstdint>

namespace proportions {

enum ModelType : int32_t { kOneSample = 0, kPairedSamples = 1, kIndependentSamples = 2 };

/// What makes a value a success, or puts it into a group. Records hold the code as a plain number.
enum Rule : int32_t { kFirst = 0, kLast = 1, kMidpoint = 2, kCutpoint = 3, kLevels = 4 };

}  // namespace proportions
