#include "module/onesample/intervals.h"

#include <cmath>

#include "host/distributions.h"
#include "module/math/arithmetic.h"
#include "module/math/wilson.h"

namespace proportions::onesample {
namespace {

/// The interval of a logit, back on the scale of proportions; `odds` are those of a failure.
Bounds fromLogit(double odds, double halfWidth) {
  return clip({1.0 / (1.0 + std::exp(halfWidth) * odds), 1.0 / (1.0 + std::exp(-halfWidth) * odds)},
              kProportionRange);
}

}  // namespace

/// Agresti & Coull (1998): the Wald interval after adding z²/2 successes and as many failures.
Bounds agrestiCoull(const Counts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double z = level.z, z2 = z * z;
  const double m = z2 + n;
  const double p = (0.5 * z2 + x) / m, q = (0.5 * z2 + f) / m;
  return symmetric(p, z * std::sqrt(q * p / m), kProportionRange);
}

/// Anscombe (1956): the empirical logit with 1/2 added to both counts, and its variance by Gart &
/// Zweifel (1967). It exists for all counts.
Bounds anscombe(const Counts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double unit = unitOf(n);
  const double s = std::sqrt(unit * (n + 1.0) * (unit * (n + 2.0)) /
                             (unit * (x + 1.0) * (unit * n) * (f + 1.0)));
  return fromLogit((f + 0.5) / (x + 0.5), level.z * s);
}

/// Clopper & Pearson (1934), by the beta quantiles; exactly 0 and 1 at the ends. The upper quantile
/// is asked for by its tail, since 1 - α/2 loses the digits of a small α.
Bounds clopperPearson(const Counts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double a2 = level.alpha * 0.5;
  const double lower = x <= 0.0 ? 0.0 : MCDistFun::IdfBeta(a2, x, f + 1.0);
  const double upper = f <= 0.0 ? 1.0 : MCDistFun::IdfBetaUpper(a2, x + 1.0, f);
  return clip({lower, upper}, kProportionRange);
}

/// The equal-tailed interval of the Jeffreys prior (Brown, Cai & DasGupta 2001). On purpose without
/// the replacement of the bounds at x = 0 and x = n that they recommend: both ends are always beta
/// quantiles.
Bounds jeffreys(const Counts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double a2 = level.alpha * 0.5;
  return clip(
      {MCDistFun::IdfBeta(a2, x + 0.5, f + 0.5), MCDistFun::IdfBetaUpper(a2, x + 0.5, f + 0.5)},
      kProportionRange);
}

/// The Wald interval of the logit (Newcombe 2001); none when an outcome was never seen.
Bounds logit(const Counts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  if (!counts.hasBothOutcomes()) return {};
  return fromLogit(f / x, level.z * std::sqrt(n / (f * x)));
}

/// Laplace (1812), Wald & Wolfowitz (1939). At x = 0 and x = n it is a single point.
Bounds wald(const Counts& counts, const Level& level) {
  return symmetric(counts.p(), level.z * std::sqrt(counts.variance()), kProportionRange);
}

/// The Wald interval widened by 1 / (2n) on both sides (Blyth & Still 1983).
Bounds waldCorrected(const Counts& counts, const Level& level) {
  const double n = counts.n;
  const double half = level.z * std::sqrt(counts.variance()) + 1.0 / (n + n);
  return symmetric(counts.p(), half, kProportionRange);
}

/// Wilson (1927): the values of p that the score test does not reject.
Bounds wilsonScore(const Counts& counts, const Level& level) {
  return clip(scoreBounds(counts, level.z), kProportionRange);
}

/// Newcombe (1998a), method 4. On purpose without his replacement of the bounds at x = 0 and x = n;
/// where the square root has no value the bound is a NaN.
Bounds wilsonScoreCorrected(const Counts& counts, const Level& level) {
  return clip(correctedScoreBounds(counts, level.z), kProportionRange);
}

}  // namespace proportions::onesample
