#include <algorithm>

#include "workbench/distributions/beta_point.h"

namespace workbench {
namespace {

// The tail below a place on the near side.
long double nearTail(const BetaPoint& at, long double power) {
  if (power == 0) return 0;
  const bool large = std::min(at.a, at.b) >= kQuadratureShape;
  const long double tail = power * (large ? betaRatioByQuadrature(at) : betaRatioByFraction(at));
  return std::clamp(tail, 0.0L, 1.0L);
}

// Which tail is computed and which one subtracted: the one on the near side of the mean. A shape
// below 1 moves the border up to where the fraction of the far side begins to converge fast; a tail
// that is subtracted there is not small.
bool lowerIsNear(const BetaPoint& at) {
  if (at.a >= 1 && at.b >= 1) return at.excess >= 0;
  return (at.a + at.b + 2) * at.x < at.a + 1;
}

}  // namespace

BetaTails betaTails(const BetaPoint& at) {
  const long double power = betaPower(at);
  if (lowerIsNear(at)) {
    const long double lower = nearTail(at, power);
    return {lower, 1 - lower, power};
  }
  const long double upper = nearTail(mirrored(at), power);
  return {1 - upper, upper, power};
}

}  // namespace workbench
