/// What the binomial functions share about their arguments.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace workbench {

/// Whether x is a whole number; it has to be finite.
inline bool isWhole(double x) {
  constexpr double kNoFractions = 4503599627370496;  // 2^52: doubles from here on have no fraction
  return std::fabs(x) >= kNoFractions || static_cast<double>(static_cast<std::int64_t>(x)) == x;
}

/// Whether X binomial(n, p) exists and k is a number: n a whole number >= 0, p in [0, 1], k neither
/// NaN nor the missing value.
inline bool binomialArgumentsValid(double k, double n, double p) {
  constexpr double kMost = std::numeric_limits<double>::max();
  return !std::isnan(k) && k != -kMost && p >= 0 && p <= 1 && n >= 0 && n <= kMost && isWhole(n);
}

/// k - n p with full relative accuracy, although both may be near 1e15: the product is split into
/// its rounded value and the exact rest; k minus the former is exact where the two are close, and
/// elsewhere one rounding does no harm.
inline long double binomialExcess(double k, double n, double p) {
  const double product = n * p;
  const double rest = std::fma(n, p, -product);
  return (static_cast<long double>(k) - product) - rest;
}

}  // namespace workbench
