/// Codes that the specification record and its readers share.
#pragma once

#include <cstdint>

namespace proportions {

/// The model type.
enum class Design : int32_t { kOneSample = 0, kPaired = 1, kIndependent = 2 };

/// What makes a value a success, or puts it into a group.
enum class SuccessRule : int32_t {
  kFirst = 0,
  kLast = 1,
  kMidpoint = 2,
  kCutpoint = 3,
  kLevels = 4
};

/// What a value is: 1 success (or second group), 0 failure (or first group), -1 not counted.
using Code = int8_t;
inline constexpr Code kNotCounted = -1;

}  // namespace proportions
