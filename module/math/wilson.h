/// The score bounds of a proportion (Wilson 1927), plain and with the continuity correction of
/// Newcombe (1998a), and their distances from the estimate, which the hybrid intervals of Newcombe
/// (1998b, 1998c) combine. None is clipped.
#pragma once

#include "module/math/interval.h"
#include "module/math/sample.h"

namespace proportions {

/// How far the score bounds lie below and above p = x / n. Taken directly instead of as p - l and u
/// - p they keep their digits for large n.
struct ScoreDistances {
  double below;  ///< p - l
  double above;  ///< u - p
};

/// What both distances are made of: z·sqrt(z²/(4n²) + pq/n), before the division by 1 + z²/n.
double scoreHalfWidth(const Sample& sample, double z);

/// 0 at x = 0 and 1 at x = n.
Bounds scoreBounds(const Sample& sample, double z);
ScoreDistances scoreDistances(const Sample& sample, double z);

/// Neither replaced at x = 0 and x = n; where a square root has no value the result is a NaN.
Bounds correctedScoreBounds(const Sample& sample, double z);
ScoreDistances correctedScoreDistances(const Sample& sample, double z);

}  // namespace proportions
