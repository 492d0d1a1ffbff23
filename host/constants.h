/// Numbers that both sides of the boundary must agree on.
#pragma once

#include <cstdint>

/// The system-missing value as a constant, for the case path; MCMV::Missing() answers the same
/// bits.
inline constexpr double kSystemMissing = -1.7976931348623157e+308;

/// Index of a variable in the active data set; negative means "none".
using VarIndex = int32_t;
