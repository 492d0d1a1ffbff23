/// Differences of products that keep their digits when the products nearly agree.
#pragma once

#include <cmath>

namespace proportions {

/// a·b - c·d with the rounding error of c·d put back (Kahan's scheme; Jeannerod, Louvet & Muller
/// 2013).
inline double differenceOfProducts(double a, double b, double c, double d) {
  const double cd = c * d;
  const double error = std::fma(-c, d, cd);
  return std::fma(a, b, -cd) + error;
}

/// x - n·p, the deviation of a count from its expectation. With counts of 1e12 the rounding of n·p
/// alone would cost six digits, so its error is put back; but where x equals the rounded n·p they
/// are meant to be equal (p is a decimal that somebody typed), and the deviation is 0.
inline double deviation(double x, double n, double p) {
  const double expected = n * p;
  if (x == expected) return 0.0;
  return (x - expected) - std::fma(n, p, -expected);
}

}  // namespace proportions
