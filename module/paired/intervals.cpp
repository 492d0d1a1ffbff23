#include "module/paired/intervals.h"

#include <cmath>

#include "module/math/arithmetic.h"
#include "module/math/wilson.h"

namespace proportions::paired {
namespace {

/// The Wald interval of the table.
Bounds waldOf(const Counts& counts, const Level& level) {
  return symmetric(counts.difference(), level.z * std::sqrt(counts.variance()), kDifferenceRange);
}

/// 1 - φ, with φ the correlation of the two outcomes for Newcombe's interval: A / sqrt(P), where A
/// = ad - bc and P is the product of the four margins. The correction of A by N / 2 applies where
/// 2A exceeds N only: else A is left as it is, also when it is negative. Missing when φ has no
/// value.
///
/// Close to φ = 1 the difference would lose all digits; (sqrt(P) - A)·(sqrt(P) + A) is P - A², and
/// that is N·(abc + abd + acd + bcd), a sum of positive terms.
double lackOfCorrelation(const Counts& counts) {
  const double unit = unitOf(counts.total());
  const auto [a, b, c, d] = counts.times(unit);
  const double n = a + b + c + d;
  const double first = (a + b) * (c + d), second = (a + c) * (b + d);
  if (first == 0.0 || second == 0.0) return 1.0;
  const double association = differenceOfProducts(d, a, c, b);
  const double excess = 2.0 * association - unit * n;
  if (std::fabs(excess) < unit * unit * 1e-12) return 1.0;
  const double root = std::sqrt(first) * std::sqrt(second);
  if (!(root > 0.0)) return kSystemMissing;
  if (association <= 0.0) return 1.0 - association / root;
  const double discordance = a * b * (c + d) + c * d * (a + b);
  const double plain = n / root * (discordance / (root + association));
  return excess > 0.0 ? plain + 0.5 * unit * n / root : plain;
}

/// sqrt(u² + v² - 2·φ·u·v) from u - v and 1 - φ.
double combine(double u, double v, double uLessV, double lack) {
  return std::sqrt(uLessV * uLessV + 2.0 * u * v * lack);
}

}  // namespace

/// Agresti & Min (2005): 1/2 added to each cell of the table.
Bounds agrestiMin(const Counts& counts, const Level& level) {
  return waldOf(counts.plus(0.5), level);
}

/// Bonett & Price (2012): 1 added to each discordant cell.
Bounds bonettPrice(const Counts& counts, const Level& level) {
  return waldOf(counts.plus(1.0), level);
}

/// Newcombe (1998c), method 10: score intervals of the two proportions, combined with their
/// correlation. The distances u and v that are combined differ by their shares of 1 - p1 - p2, and
/// by their half widths, whose squares differ by a multiple of the same: u - v is taken from the
/// counts, since the rounded distances may agree to half their digits.
Bounds newcombe(const Counts& counts, const Level& level) {
  const double lack = lackOfCorrelation(counts);
  if (isMissing(lack)) return {};
  const double n = counts.total(), z = level.z, difference = counts.difference();
  const ScoreDistances first = scoreDistances(counts.first(), z);
  const ScoreDistances second = scoreDistances(counts.second(), z);
  const double widths = scoreHalfWidth(counts.first(), z) + scoreHalfWidth(counts.second(), z);
  const double shift = z * z / n * ((counts.d - counts.a) / n) / (z * z / n + 1.0);
  const double tilt = widths > 0.0 ? difference / widths : 0.0;
  return clip({difference - combine(second.above, first.below, shift * (1.0 - tilt), lack),
               difference + combine(second.below, first.above, shift * (1.0 + tilt), lack)},
              kDifferenceRange);
}

/// The Wald interval (Fleiss 1981); a single point without discordant pairs.
Bounds wald(const Counts& counts, const Level& level) { return waldOf(counts, level); }

/// The Wald interval widened by 1 / N on both sides; by 1 on the scale of counts, where a
/// difference of 1 cancels without a trace.
Bounds waldCorrected(const Counts& counts, const Level& level) {
  const double n = counts.total(), difference = counts.b - counts.c;
  const double half = level.z * std::sqrt(counts.variance());
  return clip({(difference - 1.0) / n - half, (difference + 1.0) / n + half}, kDifferenceRange);
}

}  // namespace proportions::paired
