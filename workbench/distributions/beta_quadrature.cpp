#include <array>
#include <cmath>
#include <cstddef>

#include "workbench/distributions/beta_point.h"
#include "workbench/distributions/gauss_legendre.h"

namespace workbench {
namespace {

// The integrand is followed until it has fallen by exp(-40), below the last place of a double.
constexpr double kDrop = 40;
// Shapes of 1000 and more keep |t| below 0.6, where the series in t, of radius pi at least, has
// settled with this many terms.
constexpr std::size_t kTerms = 22;
// One panel for the bulk and one for the rest: relative error below 1e-18 for every tail shape
// between a half Gaussian and an exponential.
constexpr double kBulk = 0.4;

using Series = std::array<double, kTerms>;

// Taylor coefficients of x(t) = x e^t / (y + x e^t), which solves x' = x - x^2; the quadratic term
// -2 x(0) x_k is taken out of the convolution so that x near 1 does not cancel.
Series logisticSeries(double x, double y) {
  Series c{};
  c[0] = x;
  c[1] = x * y;
  for (std::size_t k = 1; k + 1 < kTerms; ++k) {
    double sum = c[k] * (y - x);
    for (std::size_t i = 1; i < k; ++i) sum -= c[i] * c[k - i];
    c[k + 1] = sum / static_cast<double>(k + 1);
  }
  return c;
}

}  // namespace

// In the logit t measured from the place, I_x(a, b) / betaPower is the integral over t < 0 of
// exp(excess t - N psi(t)), psi(t) = ln(1 + x (e^t - 1)) - x t >= 0. With large shapes the
// integrand is close to a Gaussian tail whatever the place.
long double betaRatioByQuadrature(const BetaPoint& at) {
  const double total = static_cast<double>(at.a + at.b);
  const double slope = static_cast<double>(at.excess);
  Series psi = logisticSeries(static_cast<double>(at.x), static_cast<double>(at.y));
  for (std::size_t k = 1; k < kTerms; ++k) psi[k] *= total / static_cast<double>(k + 1);

  const auto integrand = [&](double s) {  // s = -t > 0
    const double t = -s;
    double sum = psi[kTerms - 1];
    for (std::size_t k = kTerms - 2; k >= 1; --k) sum = sum * t + psi[k];
    return std::exp(-s * (slope + sum * s));
  };
  const double reach = 2 * kDrop / (slope + std::sqrt(slope * slope + 4 * kDrop * psi[1]));
  return static_cast<long double>(gaussLegendre(integrand, 0, kBulk * reach)) +
         gaussLegendre(integrand, kBulk * reach, reach);
}

}  // namespace workbench
