#include <cmath>

#include "workbench/distributions/beta_point.h"
#include "workbench/distributions/deviance.h"
#include "workbench/distributions/stirling_error.h"

namespace workbench {

namespace {
constexpr long double kTwoPi = 6.28318530717958647692528676655900577L;
}

// The saddle-point form of Loader (2000), carried over to real shapes: with N = a + b the powers
// are exp(-D), D the sum of two deviance parts, and the gamma functions leave Stirling remainders.
long double betaPower(const BetaPoint& at) {
  const long double total = at.a + at.b;
  const long double deviance =
      deviancePart(at.a, total * at.x, at.excess) + deviancePart(at.b, total * at.y, -at.excess);
  const long double remainder = stirlingError(total) - stirlingError(at.a) - stirlingError(at.b);
  return std::sqrt(at.a / total * at.b / kTwoPi) * std::exp(remainder - deviance);
}

}  // namespace workbench
