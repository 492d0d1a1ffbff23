/// Numbers that both sides of the boundary must agree on.
#pragma once

#include <bit>
#include <cstdint>

/// The system-missing value as a constant, for the case path; MCMV::Missing() answers the same
/// bits.
inline constexpr double kSystemMissing = -1.7976931348623157e+308;

/// A comparison of bits: no other bits stand for this number, and it is cheaper in the case path.
inline bool IsSystemMissing(double value) {
  return std::bit_cast<uint64_t>(value) == std::bit_cast<uint64_t>(kSystemMissing);
}

/// Index of a variable in the active data set; negative means "none".
using VarIndex = int32_t;
