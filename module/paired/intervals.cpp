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

/// The correlation of the two outcomes for Newcombe's interval. The correction by N / 2 applies to
/// a positive association only: a negative one is left as it is, and is not set to 0. Missing when
/// it has no value.
double correlation(const PairedCounts& counts) {
  const auto [a, b, c, d] = counts;
  const double n = counts.total();
  const double margins[] = {a + b, c + d, a + c, b + d};
  double product = 1.0;
  for (const double margin : margins) {
    if (margin == 0.0) return 0.0;
    product *= margin;
  }
  const double association = differenceOfProducts(d, a, c, b);
  if (std::fabs(2.0 * association - n) < 1e-12) return 0.0;
  if (!(product > 0.0)) return kSystemMissing;
  const double corrected = 2.0 * association > n ? association - 0.5 * n : association;
  return corrected / std::sqrt(product);
}

/// sqrt(u² + v² - 2·φ·u·v)
double combine(double u, double v, double phi) {
  return std::sqrt(u * u + v * v - 2.0 * phi * u * v);
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
  const double phi = correlation(counts);
  if (isMissing(phi)) return {};
  const auto [a, b, c, d] = counts;
  const ScoreDistances first = scoreDistances(a + b, c + d, counts.total(), level.z);
  const ScoreDistances second = scoreDistances(a + c, b + d, counts.total(), level.z);
  const double difference = (b - c) / counts.total();
  return clip({difference - combine(second.above, first.below, phi),
               difference + combine(second.below, first.above, phi)},
              kDifferenceRange);
}

/// The Wald interval (Fleiss 1981); a single point without discordant pairs.
Bounds waldPaired(const PairedCounts& counts, const Level& level) {
  return symmetric((counts.b - counts.c) / counts.total(), level.z * waldError(counts),
                   kDifferenceRange);
}

/// The Wald interval widened by 1 / N on both sides.
Bounds waldPairedCorrected(const PairedCounts& counts, const Level& level) {
  const double n = counts.total();
  return symmetric((counts.b - counts.c) / n, 1.0 / n + level.z * waldError(counts),
                   kDifferenceRange);
}

}  // namespace proportions
