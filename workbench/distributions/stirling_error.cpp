#include "workbench/distributions/stirling_error.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace workbench {
namespace {

// From here on the series below has converged to less than 1e-20 with nine terms.
constexpr int kSeriesStart = 16;

// S(0) is not defined; its place is never read.
constexpr std::array<double, kSeriesStart> kWhole = {0.0,
                                                     0.08106146679532726,
                                                     0.0413406959554093,
                                                     0.02767792568499834,
                                                     0.020790672103765093,
                                                     0.016644691189821193,
                                                     0.013876128823070748,
                                                     0.01189670994589177,
                                                     0.010411265261972096,
                                                     0.009255462182712733,
                                                     0.00833056343336287,
                                                     0.007573675487951841,
                                                     0.00694284010720953,
                                                     0.006408994188004207,
                                                     0.0059513701127588475,
                                                     0.005554733551962801};

// Beyond this three terms of the series will do, the next one being below 1e-22.
constexpr double kShortSeriesStart = 512;

// Stirling's series, Abramowitz & Stegun 6.1.41: B(2j) / (2j (2j - 1)) for j = 1, 2, ...
double series(double a, double r) {
  const double s = r * r;
  if (a >= kShortSeriesStart) return ((s * (1.0 / 1260) - 1.0 / 360) * s + 1.0 / 12) * r;
  double sum = 43867.0 / 244188;
  sum = sum * s - 3617.0 / 122400;
  sum = sum * s + 1.0 / 156;
  sum = sum * s - 691.0 / 360360;
  sum = sum * s + 1.0 / 1188;
  sum = sum * s - 1.0 / 1680;
  sum = sum * s + 1.0 / 1260;
  sum = sum * s - 1.0 / 360;
  sum = sum * s + 1.0 / 12;
  return sum * r;
}

}  // namespace

double stirlingErrorWhole(double k, double reciprocal) {
  if (k < kSeriesStart) return kWhole[static_cast<std::size_t>(k)];
  return series(k, reciprocal);
}

long double stirlingError(long double a) {
  if (a >= kSeriesStart) return series(static_cast<double>(a), static_cast<double>(1 / a));
  // Gamma(a + 1) = Gamma(c + 1) / ((a + 1) ... (a + m)) with c = a + m in the range of the series.
  long double c = a, product = 1;
  while (c < kSeriesStart) {
    c += 1;
    product *= c;
  }
  return series(static_cast<double>(c), static_cast<double>(1 / c)) +
         ((c + 0.5L) * std::log(c) - c - std::log(product)) - ((a + 0.5L) * std::log(a) - a);
}

}  // namespace workbench
