/// Intervals and the range they are clipped to.
#pragma once

#include "module/math/missing.h"

namespace proportions {

/// Two ends of an interval; each may be the missing value or a NaN.
struct Bounds {
  double lower = kSystemMissing;
  double upper = kSystemMissing;
};

inline constexpr Bounds kProportionRange{0.0, 1.0};
inline constexpr Bounds kDifferenceRange{-1.0, 1.0};

/// Replaces an end that lies beyond the range by the limit. A NaN fails both comparisons and
/// passes; a missing end is below every limit but is not a bound, and stays missing.
inline Bounds clip(Bounds bounds, const Bounds& range) {
  if (range.lower > bounds.lower && !isMissing(bounds.lower)) bounds.lower = range.lower;
  if (range.upper < bounds.upper) bounds.upper = range.upper;
  return bounds;
}

/// The interval centre ± half, clipped.
inline Bounds symmetric(double centre, double half, const Bounds& range) {
  return clip({centre - half, centre + half}, range);
}

}  // namespace proportions
