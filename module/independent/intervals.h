/// Confidence intervals of the difference of two independent proportions.
#pragma once

#include <array>

#include "module/math/interval.h"
#include "module/syntax/method_table.h"

namespace proportions {

/// Successes x, failures f and trials n = x + f > 0 of one group.
struct GroupCounts {
  double x;
  double f;
  double n;
};

struct TwoGroups {
  GroupCounts first;
  GroupCounts second;
};

/// p1 - p2 from the counts, so that nearly equal proportions keep the digits of their difference.
double differenceOfProportions(const TwoGroups& groups);
/// (1 - p1)·p1 / (n1 - less) + (1 - p2)·p2 / (n2 - less); 1 - p is taken as f / n.
double unpooledVariance(const TwoGroups& groups, double less = 0.0);
/// x1·n2 - x2·n1, the difference over 1 / (n1·n2).
double crossDifference(const TwoGroups& groups);
/// The continuity corrections as multiples of 1 / (2·n1·n2), in which they and the difference are
/// whole numbers: (1/n1 + 1/n2) / 2 of the Wald family, and 1 / (2·min(n1, n2)) of Hauck &
/// Anderson.
double waldCorrection(const TwoGroups& groups);
double hauckAndersonCorrection(const TwoGroups& groups);
/// The correction of Hauck & Anderson needs more than one trial in each group.
inline bool bothAboveOne(const TwoGroups& groups) {
  return groups.first.n > 1.0 && groups.second.n > 1.0;
}

/// Every method gives bounds in [-1, 1]; a bound that does not exist is missing. None treats 0 or n
/// successes in a way of its own.
using IndependentInterval = Bounds (*)(const TwoGroups&, const Level&);

Bounds agrestiCaffo(const TwoGroups& groups, const Level& level);
Bounds brownLiJeffreys(const TwoGroups& groups, const Level& level);
Bounds hauckAnderson(const TwoGroups& groups, const Level& level);
Bounds newcombe(const TwoGroups& groups, const Level& level);
Bounds newcombeCorrected(const TwoGroups& groups, const Level& level);
Bounds waldDifference(const TwoGroups& groups, const Level& level);
Bounds waldDifferenceCorrected(const TwoGroups& groups, const Level& level);

inline constexpr std::array<Method<IndependentInterval>, 7> kIndependentIntervals{{
    {"AGRESTI_CAFFO", "Agresti-Caffo", true, agrestiCaffo},
    {"BROWN_LI_JEFFREYS", "Brown-Li-Jeffreys", false, brownLiJeffreys},
    {"HAUCK_ANDERSON", "Hauck-Anderson", false, hauckAnderson},
    {"NEWCOMBE", "Newcombe", true, newcombe},
    {"NEWCOMBECC", "Newcombe (Continuity Corrected)", false, newcombeCorrected},
    {"WALD", "Wald", false, waldDifference},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldDifferenceCorrected},
}};

}  // namespace proportions
