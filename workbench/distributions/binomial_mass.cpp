#include <cmath>

#include "host/distributions.h"
#include "workbench/distributions/binomial_arguments.h"
#include "workbench/distributions/deviance.h"
#include "workbench/distributions/stirling_error.h"

namespace workbench {
namespace {

constexpr double kPerTwoPi = 0.15915494309189535;
constexpr double kAllWhole = 9007199254740992;  // 2^53: up to here every count is a double
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

// Whether Hoeffding's bound (1963), exp(-2 (k - n p)^2 / n), has vanished. Long runs of calls spend
// most of their time out there. The margin covers the rounding of n p.
bool farOut(double k, double n, double p) {
  const double excess = k - n * p;
  return n < kAllWhole && 2 * excess * excess > (kVanished + 1) * n;
}

// Loader, C. (2000), for 0 < k < n and 0 < p < 1.
double saddlePoint(double k, double n, double p) {
  const double rest = n - k;
  const long double excess = binomialExcess(k, n, p);
  const long double mean = static_cast<long double>(n) * p;
  const long double meanRest = n * (1 - static_cast<long double>(p));
  const long double deviance =
      deviancePart(k, mean, excess) + deviancePart(rest, meanRest, -excess);
  if (deviance > kVanished) return 0;
  const double perN = 1 / n, perK = 1 / k, perRest = 1 / rest;
  const double remainder =
      stirlingErrorWhole(n, perN) - stirlingErrorWhole(k, perK) - stirlingErrorWhole(rest, perRest);
  const long double exponent = remainder - deviance;
  const double high = static_cast<double>(exponent);
  const double low = static_cast<double>(exponent - high);
  return std::sqrt(n * perK * perRest * kPerTwoPi) * (std::exp(high) * (1 + low));
}

}  // namespace
}  // namespace workbench

double MCDistFun::PdfBin(double k, double n, double p, int32_t& error) {
  using namespace workbench;
  if (!binomialArgumentsValid(k, n, p)) {
    error = 1;
    return MCMV::Missing();
  }
  if (k < 0 || k > n || !isWhole(k)) return 0;
  if (p == 0) return k == 0 ? 1 : 0;
  if (p == 1) return k == n ? 1 : 0;
  if (k == 0) return noneOf(n, p);
  if (k == n) return allOf(n, p);
  if (farOut(k, n, p)) return 0;
  return saddlePoint(k, n, p);
}
