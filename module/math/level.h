/// The confidence level as the methods take it.
#pragma once

#include <cmath>

#include "module/math/missing.h"

namespace proportions {

struct Level {
  double alpha;  ///< 1 - level / 100
  double z;      ///< two-sided standard normal critical value, finite or NaN
};

/// Stands for an infinite critical value, that is for the limit of each interval as z grows: the
/// bounds have reached it, to rounding, while the square of z is still finite.
inline constexpr double kInfiniteZ = 1e100;

/// A level from an analysis' alpha and critical value. A missing critical value cannot be computed
/// with and becomes a NaN.
inline Level makeLevel(double alpha, double zCrit) {
  if (isMissing(zCrit)) return {alpha, NAN};
  return {alpha, std::isinf(zCrit) ? kInfiniteZ : zCrit};
}

}  // namespace proportions
