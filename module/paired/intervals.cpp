#include "module/paired/intervals.h"

#include <cmath>

#include "module/math/arithmetic.h"
#include "module/math/wilson.h"

namespace proportions {

double discordantSpread(double concordant, double b, double c) {
  const double n = concordant + b + c;
  return (concordant * (b + c) + 4.0 * b * c) / n / n;
}

namespace {

/// The Wald interval after `add` has been added to both discordant counts and 2 to the number of
/// pairs.
Bounds adjustedWald(const PairedCounts& counts, const Level& level, double add) {
  const double m = counts.total() + 2.0;
  const double concordant = counts.a + counts.d + (2.0 - 2.0 * add);
  const double s = std::sqrt(discordantSpread(concordant, counts.b + add, counts.c + add) / m);
  return symmetric((counts.b - counts.c) / m, level.z * s, kDifferenceRange);
}

double waldError(const PairedCounts& counts) {
  return std::sqrt(discordantSpread(counts.a + counts.d, counts.b, counts.c) / counts.total());
}

/// 1 - φ, with φ the correlation of the two outcomes for Newcombe's interval: A / sqrt(P), where A
/// = ad - bc and P is the product of the four margins. The correction of A by N / 2 applies where
/// 2A exceeds N only: else A is left as it is, also when it is negative. Missing when φ has no
/// value.
///
/// Close to φ = 1 the difference would lose all digits; (sqrt(P) - A)·(sqrt(P) + A) is P - A² =
/// N·(abc
/// + abd + acd + bcd), a sum of positive terms.
double lackOfCorrelation(const PairedCounts& counts) {
  const auto [a, b, c, d] = counts;
  const double n = counts.total();
  const double first = (a + b) * (c + d), second = (a + c) * (b + d);
  if (first == 0.0 || second == 0.0) return 1.0;
  const double association = differenceOfProducts(d, a, c, b);
  const double excess = 2.0 * association - n;
  if (std::fabs(excess) < 1e-12) return 1.0;
  const double root = std::sqrt(first) * std::sqrt(second);
  if (!(root > 0.0)) return kSystemMissing;
  if (association <= 0.0) return 1.0 - association / root;
  const double discordance = a * b * (c + d) + c * d * (a + b);
  const double plain = n / root * (discordance / (root + association));
  return excess > 0.0 ? plain + 0.5 * n / root : plain;
}

/// sqrt(u² + v² - 2·φ·u·v) from u - v and 1 - φ.
double combine(double u, double v, double uLessV, double lack) {
  return std::sqrt(uLessV * uLessV + 2.0 * u * v * lack);
}

}  // namespace

/// Agresti & Min (2005): 1/2 added to each cell of the table.
Bounds agrestiMin(const PairedCounts& counts, const Level& level) {
  return adjustedWald(counts, level, 0.5);
}

/// Bonett & Price (2012): 1 added to each discordant cell.
Bounds bonettPrice(const PairedCounts& counts, const Level& level) {
  return adjustedWald(counts, level, 1.0);
}

/// Newcombe (1998c), method 10: score intervals of the two proportions, combined with their
/// correlation.
Bounds newcombePaired(const PairedCounts& counts, const Level& level) {
  const double lack = lackOfCorrelation(counts);
  if (isMissing(lack)) return {};
  const auto [a, b, c, d] = counts;
  const double n = counts.total(), z = level.z;
  const ScoreDistances first = scoreDistances(a + b, c + d, n, z);
  const ScoreDistances second = scoreDistances(a + c, b + d, n, z);
  const double difference = (b - c) / n;
  // The distances differ by their shares of 1 - p1 - p2, and by their half widths, whose squares
  // differ by a multiple of the same: taken from the counts, since the rounded distances may agree
  // to half their digits.
  const double widths = scoreHalfWidth(a + b, c + d, n, z) + scoreHalfWidth(a + c, b + d, n, z);
  const double shift = z * z / n * ((d - a) / n) / (z * z / n + 1.0);
  const double tilt = widths > 0.0 ? difference / widths : 0.0;
  return clip({difference - combine(second.above, first.below, shift * (1.0 - tilt), lack),
               difference + combine(second.below, first.above, shift * (1.0 + tilt), lack)},
              kDifferenceRange);
}

/// The Wald interval (Fleiss 1981); a single point without discordant pairs.
Bounds waldPaired(const PairedCounts& counts, const Level& level) {
  return symmetric((counts.b - counts.c) / counts.total(), level.z * waldError(counts),
                   kDifferenceRange);
}

/// The Wald interval widened by 1 / N on both sides; by 1 on the scale of counts, where a
/// difference of 1 cancels without a trace.
Bounds waldPairedCorrected(const PairedCounts& counts, const Level& level) {
  const double n = counts.total(), difference = counts.b - counts.c;
  const double half = level.z * waldError(counts);
  return clip({(difference - 1.0) / n - half, (difference + 1.0) / n + half}, kDifferenceRange);
}

}  // namespace proportions
