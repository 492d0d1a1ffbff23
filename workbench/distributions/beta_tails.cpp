#include <algorithm>

#include "workbench/distributions/beta_point.h"

namespace workbench {
namespace {

// The tail below a place that is not above the mean.
long double nearTail(const BetaPoint& at, long double power) {
  if (power == 0) return 0;
  const bool large = std::min(at.a, at.b) >= kQuadratureShape;
  const long double tail = power * (large ? betaRatioByQuadrature(at) : betaRatioByFraction(at));
  return std::clamp(tail, 0.0L, 1.0L);
}

}  // namespace

BetaTails betaTails(const BetaPoint& at) {
  const long double power = betaPower(at);
  if (at.excess >= 0) {
    const long double lower = nearTail(at, power);
    return {lower, 1 - lower, power};
  }
  const long double upper = nearTail(mirrored(at), power);
  return {1 - upper, upper, power};
}

}  // namespace workbench
