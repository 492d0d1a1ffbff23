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

/// 8-byte words that one observation of a variable of that type takes (ZELK_Variable::GetType): 1
/// for a number and for a string of up to 8 bytes, (width + 7) / 8 for a wider string.
inline constexpr int32_t ObsLength(int32_t type) { return type <= 8 ? 1 : (type + 7) / 8; }
