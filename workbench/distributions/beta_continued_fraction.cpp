#include <cmath>

#include "workbench/distributions/beta_point.h"

namespace workbench {

namespace {
constexpr int kMostTerms = 20000;
constexpr long double kSettled = 1e-19L;
constexpr long double kTiny = 1e-4000L;
}  // namespace

// The fraction of Didonato & Morris (1992), Algorithm 708, BFRAC, evaluated as Lentz (1976) with
// the safeguard of Thompson & Barnett (1986).
long double betaRatioByFraction(const BetaPoint& at) {
  const auto [a, b, x, y, excess] = at;
  long double value = a * (excess + 1) / (a + 1);
  long double c = value, d = 0;
  for (int m = 1; m < kMostTerms; ++m) {
    const long double r = a + 2 * m - 1;
    const long double numerator = (a + m - 1) / r * ((a + b + m - 1) / r) * m * (b - m) * x * x;
    const long double denominator =
        m + m * (b - m) * x / r + (a + m) / (r + 2) * (excess + 1 + m * (1 + y));
    d = denominator + numerator * d;
    d = 1 / (d == 0 ? kTiny : d);
    c = denominator + numerator / c;
    if (c == 0) c = kTiny;
    const long double factor = c * d;
    value *= factor;
    if (!(std::fabs(factor - 1) > kSettled)) break;  // a NaN ends the loop too
  }
  return 1 / value;
}

}  // namespace workbench
