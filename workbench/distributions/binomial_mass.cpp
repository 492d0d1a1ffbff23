#include <cmath>

#include "host/distributions.h"
#include "workbench/distributions/binomial_arguments.h"
#include "workbench/distributions/deviance.h"
#include "workbench/distributions/stirling_error.h"

namespace workbench {
namespace {

constexpr double kTwoPi = 6.283185307179586;
// exp(-746) is below half the least positive double.
constexpr double kVanished = 746;

// (1 - p)^n
double noneOf(double n, double p) {
  return static_cast<double>(std::exp(n * std::log1p(-static_cast<long double>(p))));
}

// p^n
double allOf(double n, double p) {
  return static_cast<double>(std::exp(n * std::log(static_cast<long double>(p))));
}

// Loader, C. (2000), for 0 < k < n and 0 < p < 1.
double saddlePoint(double k, double n, double p) {
  const double rest = n - k;
  const long double excess = binomialExcess(k, n, p);
  // The mass is at most exp(-2 excess^2 / n) (Hoeffding 1963). Long runs of calls spend most of
  // their time out there.
  const double far = static_cast<double>(excess);
  if (2 * far * far > kVanished * n) return 0;

  const long double mean = static_cast<long double>(n) * p;
  const long double meanRest = n * (1 - static_cast<long double>(p));
  const long double deviance =
      deviancePart(k, mean, excess) + deviancePart(rest, meanRest, -excess);
  if (deviance > kVanished) return 0;
  const double remainder = stirlingErrorWhole(n) - stirlingErrorWhole(k) - stirlingErrorWhole(rest);
  const long double exponent = remainder - deviance;
  const double high = static_cast<double>(exponent);
  const double low = static_cast<double>(exponent - high);
  return std::sqrt(n / k / (kTwoPi * rest)) * (std::exp(high) * (1 + low));
}

}  // namespace
}  // namespace workbench

double MCDistFun::PdfBin(double k, double n, double p, int32_t& error) {
  using namespace workbench;
  if (!binomialArgumentsValid(k, n, p)) {
    error = 1;
    return MCMV::Missing();
  }
  if (k < 0 || k > n || std::trunc(k) != k) return 0;
  if (p == 0) return k == 0 ? 1 : 0;
  if (p == 1) return k == n ? 1 : 0;
  if (k == 0) return noneOf(n, p);
  if (k == n) return allOf(n, p);
  return saddlePoint(k, n, p);
}
