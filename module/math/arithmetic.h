/// Products of counts that stay finite, and differences of them that keep their digits.
#pragma once

#include <cmath>

namespace proportions {

/// 2^53: up to here every whole number is a double, and every sum of them exact in any order.
inline constexpr double kAllWhole = 9007199254740992.0;

/// Weights have no bound: the power of two that brings a count from 2^300 on near 1, so that
/// products of it and of its parts stay finite; 1 for all smaller ones, whose products of three are
/// finite.
inline double unitOf(double count) {
  return count < 0x1p300 ? 1.0 : std::ldexp(1.0, -std::ilogb(count));
}

/// a·b - c·d with the rounding error of c·d put back (Kahan's scheme; Jeannerod, Louvet & Muller
/// 2013).
inline double differenceOfProducts(double a, double b, double c, double d) {
  const double cd = c * d;
  const double error = std::fma(-c, d, cd);
  return std::fma(a, b, -cd) + error;
}

/// x - n·p, the deviation of a count from its expectation, 0 < p < 1. With counts of 1e12 the
/// rounding of n·p alone would cost six digits, so its error is put back. p is a decimal that
/// somebody typed, known to half a unit in its last place: a deviation that this accounts for is 0.
inline double deviation(double x, double n, double p) {
  const double expected = n * p;
  const double difference = (x - expected) - std::fma(n, p, -expected);
  const double unit = std::nextafter(p, 1.0) - p;
  return std::fabs(difference) <= n * unit * 0.5 ? 0.0 : difference;
}

}  // namespace proportions
