#include "module/onesample/intervals.h"

#include <cmath>

#include "host/distributions.h"

namespace proportions {
namespace {

/// The interval of a logit, back on the scale of proportions; `odds` are those of a failure.
Bounds fromLogit(double odds, double halfWidth) {
  return clip({1.0 / (1.0 + std::exp(halfWidth) * odds), 1.0 / (1.0 + std::exp(-halfWidth) * odds)},
              kProportionRange);
}

double standardError(const OneSampleCounts& counts) {
  const auto [x, f, n] = counts;
  return std::sqrt((f / n) * (x / n) / n);
}

}  // namespace

/// Agresti & Coull (1998): the Wald interval after adding z²/2 successes and as many failures.
Bounds agrestiCoull(const OneSampleCounts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double z = level.z, z2 = z * z;
  const double m = z2 + n;
  const double p = (0.5 * z2 + x) / m, q = (0.5 * z2 + f) / m;
  return symmetric(p, z * std::sqrt(q * p / m), kProportionRange);
}

/// Anscombe (1956): the empirical logit with 1/2 added to both counts, and its variance by Gart &
/// Zweifel (1967). It exists for all counts.
Bounds anscombe(const OneSampleCounts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double s = std::sqrt((n + 1.0) * (n + 2.0) / ((x + 1.0) * n * (f + 1.0)));
  return fromLogit((f + 0.5) / (x + 0.5), level.z * s);
}

/// Clopper & Pearson (1934), by the beta quantiles; exactly 0 and 1 at the ends. The upper quantile
/// is asked for by its tail, since 1 - α/2 loses the digits of a small α.
Bounds clopperPearson(const OneSampleCounts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double a2 = level.alpha * 0.5;
  const double lower = x <= 0.0 ? 0.0 : MCDistFun::IdfBeta(a2, x, f + 1.0);
  const double upper = f <= 0.0 ? 1.0 : MCDistFun::IdfBetaUpper(a2, x + 1.0, f);
  return clip({lower, upper}, kProportionRange);
}

/// The equal-tailed interval of the Jeffreys prior (Brown, Cai & DasGupta 2001). On purpose without
/// the replacement of the bounds at x = 0 and x = n that they recommend: both ends are always beta
/// quantiles.
Bounds jeffreys(const OneSampleCounts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double a2 = level.alpha * 0.5;
  return clip(
      {MCDistFun::IdfBeta(a2, x + 0.5, f + 0.5), MCDistFun::IdfBetaUpper(a2, x + 0.5, f + 0.5)},
      kProportionRange);
}

/// The Wald interval of the logit (Newcombe 2001); none when an outcome was never seen.
Bounds logit(const OneSampleCounts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  if (!(x > 0.0 && f > 0.0)) return {};
  return fromLogit(f / x, level.z * std::sqrt(n / (f * x)));
}

/// Laplace (1812), Wald & Wolfowitz (1939). At x = 0 and x = n it is a single point.
Bounds wald(const OneSampleCounts& counts, const Level& level) {
  return symmetric(counts.x / counts.n, level.z * standardError(counts), kProportionRange);
}

/// The Wald interval widened by 1 / (2n) on both sides (Blyth & Still 1983).
Bounds waldCorrected(const OneSampleCounts& counts, const Level& level) {
  const double n = counts.n;
  const double half = level.z * standardError(counts) + 1.0 / (n + n);
  return symmetric(counts.x / n, half, kProportionRange);
}

/// Wilson (1927): the values of p that the score test does not reject, (m - h) / d and (m + h) / d.
/// The lower bound equals p² / (m + h), and 1 less the upper one is the same of the failures:
/// without the differences the bounds keep their digits, and are 0 at x = 0 and 1 at x = n.
Bounds wilsonScore(const OneSampleCounts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double p = x / n, q = f / n, z = level.z, z2 = z * z;
  if (z == kInfiniteZ) return kProportionRange;  // p² / (m + h) would come out as 1e-200, not as 0
  const double h = z * std::sqrt(z2 / (n * 4 * n) + q * p / n);
  const double m0 = z2 / (n + n);
  const double d = z2 / n + 1;
  const auto lower = [m0, h](double share) {
    return share > 0.0 ? share * share / (m0 + share + h) : 0.0;
  };
  return clip({lower(p), q < p ? 1.0 - lower(q) : (m0 + p + h) / d}, kProportionRange);
}

/// Newcombe (1998a), method 4. On purpose without his replacement of the bounds at x = 0 and x = n;
/// where the square root has no value the bound is a NaN.
Bounds wilsonScoreCorrected(const OneSampleCounts& counts, const Level& level) {
  const auto [x, f, n] = counts;
  const double p = x / n, z = level.z, z2 = z * z;
  const double k = z2 - 1.0 / n + 4.0 * p * f;
  const double d = 2.0 * (n + z2);
  const double lower = (2.0 * x + z2 - (1.0 + z * std::sqrt(k + 4.0 * p - 2.0))) / d;
  const double upper = (2.0 * x + z2 + (1.0 + z * std::sqrt(k - 4.0 * p + 2.0))) / d;
  return clip({lower, upper}, kProportionRange);
}

}  // namespace proportions
