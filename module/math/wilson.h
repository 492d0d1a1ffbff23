/// Wilson (1927): the score bounds of a proportion, and their distances from the estimate.
#pragma once

#include <cmath>

namespace proportions {

/// How far the score bounds lie below and above p = x / n. The hybrid intervals of Newcombe (1998)
/// combine these distances; taken directly instead of as p - l and u - p they keep their digits for
/// large n.
struct ScoreDistances {
  double below;  ///< p - l
  double above;  ///< u - p
};

/// What both distances are made of: z·sqrt(z²/(4n²) + pq/n), before the division by 1 + z²/n.
inline double scoreHalfWidth(double x, double f, double n, double z) {
  return z * std::sqrt(z * z / (n * 4 * n) + (f / n) * (x / n) / n);
}

/// `x` successes, `f` failures, n = x + f > 0. The smaller distance comes from the product of the
/// two, z²·p·q / n / d, since the difference that it is would lose its digits towards p = 0 and p =
/// 1, where it is 0.
inline ScoreDistances scoreDistances(double x, double f, double n, double z) {
  const double p = x / n, q = f / n, z2 = z * z;
  const double h = scoreHalfWidth(x, f, n, z);
  const double shift = z2 / n * (p - 0.5);
  const double d = z2 / n + 1;
  const double sum = h + std::fabs(shift);
  const double larger = sum / d;
  const double smaller = sum == 0.0 ? 0.0 : z2 * p * q / n / sum;
  return shift < 0.0 ? ScoreDistances{smaller, larger} : ScoreDistances{larger, smaller};
}

}  // namespace proportions
