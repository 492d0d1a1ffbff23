#include <algorithm>
#include <cmath>

#include "host/distributions.h"
#include "workbench/distributions/beta_point.h"
#include "workbench/distributions/stirling_error.h"

namespace workbench {
namespace {

// Logits beyond +-760 belong to places that are 0 or 1 in double.
constexpr long double kLogitReach = 760;
constexpr int kMostSteps = 100;
// Two shapes beyond this leave the place at the mean to all digits of a double.
constexpr long double kDegenerate = 1e40L;
// The last place of a logit in extended precision.
constexpr long double kFinest = 1e-19L;

// ln(a B(a, b)), the constant of the leading term x^a / (a B(a, b)).
long double logLeadingConstant(long double a, long double b) {
  const long double total = a + b;
  return std::log(a) + 0.5L * std::log(6.283185307179586477L * total / a / b) +
         a * std::log(a / total) + b * std::log(b / total) + stirlingError(a) + stirlingError(b) -
         stirlingError(total);
}

// The normal quantile at r <= 0.5 after Abramowitz & Stegun 26.2.23.
long double roughNormalQuantile(long double r) {
  const long double t = std::sqrt(-2 * std::log(r));
  return -(t - (2.515517L + t * (0.802853L + t * 0.010328L)) /
                   (1 + t * (1.432788L + t * (0.189269L + t * 0.001308L))));
}

// Whether the tail below the logit -kLogitReach already holds r or more. So far out the leading
// term is the whole tail for any shapes that are doubles.
bool beyondReach(long double r, long double a, long double b) {
  return -kLogitReach * a - logLeadingConstant(a, b) >= std::log(r);
}

// A first logit for the lower tail r <= 0.5: Paulson (1942), the cube root of an F variable taken
// as the ratio of two normal ones, or the leading term of the tail where that is higher or Paulson
// has no solution. The leading term's logit never exceeds the true one.
long double startLogit(long double r, long double a, long double b) {
  // The leading term gives ln x; for b >= 1 it is an upper bound of the tail, so that the place it
  // gives is a lower bound also as a logit, which matters for large a, where x is close to 1.
  const long double logPlace = (std::log(r) + logLeadingConstant(a, b)) / a;
  const bool belowOne = b >= 1 && logPlace < 0;
  const long double leading = belowOne ? logPlace - std::log(-std::expm1(logPlace)) : logPlace;
  const long double z = roughNormalQuantile(r);
  const long double va = 1 / (9 * a), vb = 1 / (9 * b);
  const long double ma = 1 - va, mb = 1 - vb;
  const long double spread = z * z * (ma * ma * vb + mb * mb * va - z * z * va * vb);
  const long double denominator = mb * mb - z * z * vb;
  const long double root = (ma * mb - std::sqrt(std::max(spread, 0.0L))) / denominator;
  if (!(denominator > 0 && spread >= 0 && root > 0)) {
    // With b < 1 <= a the complement of x is nearly a gamma variable over a, whose tail is not far
    // from an exponential one.
    return b < 1 && a >= 1 ? std::max(leading, std::log(a / (1 - std::log(r)))) : leading;
  }
  return std::max(leading, 3 * std::log(root) + std::log(a / b));
}

BetaPoint atLogit(long double w, long double a, long double b) {
  const long double odds = std::exp(-std::fabs(w));
  const long double small = odds / (1 + odds), large = 1 / (1 + odds);
  const long double x = w < 0 ? small : large, y = w < 0 ? large : small;
  return {a, b, x, y, a * y - b * x};
}

// The logit with lower tail r, 0 < r <= 0.5. ln I_x(a, b) is a concave increasing function of the
// logit, so that Newton's steps with Halley's correction close in from below whatever the shapes;
// the bracket only catches steps that leave it.
long double logitOfLowerTail(long double r, long double a, long double b) {
  if (std::min(a, b) > kDegenerate) return std::log(a / b);
  if (beyondReach(r, a, b)) return -kLogitReach;
  if (beyondReach(1 - r, b, a)) return kLogitReach;
  long double low = -kLogitReach, high = kLogitReach;
  long double w = startLogit(r, a, b);
  const long double scale = 1e-7L * std::min(1.0L, std::sqrt(1 / a + 1 / b));
  for (int step = 0; step < kMostSteps; ++step) {
    if (!(w > low && w < high)) w = low + (high - low) / 2;
    const BetaPoint at = atLogit(w, a, b);
    const BetaTails tails = betaTails(at);
    (tails.lower < r ? low : high) = w;
    const long double miss = std::log(tails.lower / r);
    const long double slope = tails.power / tails.lower;
    const long double bend = std::clamp(1 - miss * (at.excess - slope) / (2 * slope), 0.5L, 2.0L);
    const long double change = miss / (slope * bend);
    const long double finest = kFinest * std::max(1.0L, std::fabs(w));
    w -= change;
    // A tail that has underflowed tells only the side: the bracket is halved.
    if (!std::isfinite(change)) continue;
    // Within the first bound the next error is the cube of this one.
    if (std::fabs(change) <= std::max(scale, finest) || high - low <= finest) break;
  }
  return std::isnan(w) ? low : std::clamp(w, low, high);
}

// The logit with lower tail q, 0 < q < 1, taken from the nearer tail: 1 - q is exact for q above
// one half.
long double logitOfTail(double q, long double a, long double b) {
  return q <= 0.5 ? logitOfLowerTail(q, a, b)
                  : -logitOfLowerTail(1 - static_cast<long double>(q), b, a);
}

bool admits(double q, double a, double b) {
  return a > 0 && b > 0 && std::isfinite(a) && std::isfinite(b) && q >= 0 && q <= 1;
}

}  // namespace
}  // namespace workbench

double MCDistFun::IdfBeta(const double& q, const double& a, const double& b) {
  using namespace workbench;
  if (!admits(q, a, b)) return MCMV::Missing();
  if (q == 0 || q == 1) return q;
  return static_cast<double>(atLogit(logitOfTail(q, a, b), a, b).x);
}

// The mirrored variable falls short of 1 - x where this one exceeds x.
double MCDistFun::IdfBetaUpper(const double& q, const double& a, const double& b) {
  using namespace workbench;
  if (!admits(q, a, b)) return MCMV::Missing();
  if (q == 0 || q == 1) return 1 - q;
  return static_cast<double>(atLogit(-logitOfTail(q, b, a), a, b).x);
}
