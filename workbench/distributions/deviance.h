/// The deviance part x ln(x / m) + m - x of the saddle-point form of a mass or density.
#pragma once

#include <cmath>

namespace workbench {

/// x ln(x / m) + m - x for x, m > 0, given the difference d = x - m to full relative accuracy.
/// Loader, C. (2000), Fast and accurate computation of binomial probabilities: near x = m the
/// logarithm is 2 artanh(v) with v = d / (x + m), which leaves d v + 2 x v^3 (1/3 + v^2/5 + ...).
/// The leading product carries the value and is taken in extended precision, because an exponent
/// near 700 has to be right to 1e-15; the remainder is small enough for doubles.
inline long double deviancePart(long double x, long double m, long double d) {
  const long double v = d / (x + m);
  const double u = static_cast<double>(v);
  if (std::fabs(u) > 0.15) return x * std::log(x / m) - d;
  const double s = u * u;
  double sum = 1.0 / 11;
  if (s > 0.0002) {  // else they are below the last place of the sum
    sum = 1.0 / 21;
    sum = sum * s + 1.0 / 19;
    sum = sum * s + 1.0 / 17;
    sum = sum * s + 1.0 / 15;
    sum = sum * s + 1.0 / 13;
    sum = sum * s + 1.0 / 11;
  }
  sum = sum * s + 1.0 / 9;
  sum = sum * s + 1.0 / 7;
  sum = sum * s + 1.0 / 5;
  sum = sum * s + 1.0 / 3;
  return v * (d + 2 * x * (v * v) * sum);
}

}  // namespace workbench
