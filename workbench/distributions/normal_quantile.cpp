#include <cmath>
#include <limits>

#include "host/distributions.h"

namespace {

constexpr long double kHalfRoot = 0.707106781186547524400844362104849039L;
constexpr long double kRootTwoPi = 2.50662827463100050241576528481104525L;

// The quantile of the lower tail r <= 0.25, Abramowitz & Stegun 26.2.23: absolute error below
// 4.5e-4, and a fair start as far as doubles reach.
long double start(long double r) {
  const long double t = std::sqrt(-2 * std::log(r));
  return -(t - (2.515517L + t * (0.802853L + t * 0.010328L)) /
                   (1 + t * (1.432788L + t * (0.189269L + t * 0.001308L))));
}

}  // namespace

double MCDistFun::IdfStdNorm(double p) {
  if (!(p >= 0 && p <= 1)) return MCMV::Missing();
  if (p == 0) return -std::numeric_limits<double>::infinity();
  if (p == 1) return std::numeric_limits<double>::infinity();
  if (p == 0.5) return 0;

  // Both p - 0.5 and 1 - p are exact where they are used.
  const long double tail = p < 0.5 ? p : 1 - static_cast<long double>(p);
  const bool central = tail > 0.25L;
  const long double offset = p < 0.5 ? static_cast<long double>(p) - 0.5L : 0.5L - p;
  long double z = central ? offset * kRootTwoPi : start(tail);
  for (int step = 0; step < 6; ++step) {
    // Halley's step on Phi(z) = tail, relative to the density.
    const long double density = std::exp(-z * z / 2) / kRootTwoPi;
    const long double miss =
        central ? 0.5L * std::erf(z * kHalfRoot) - offset : 0.5L * std::erfc(-z * kHalfRoot) - tail;
    const long double u = miss / density;
    const long double change = u / (1 + z * u / 2);
    z -= change;
    if (std::fabs(change) <= 1e-7L * std::fabs(z)) break;  // the next error is its cube
  }
  return static_cast<double>(p < 0.5 ? z : -z);
}
