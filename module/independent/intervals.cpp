#include "module/independent/intervals.h"

#include <algorithm>
#include <cmath>

#include "module/math/arithmetic.h"
#include "module/math/wilson.h"

namespace proportions {

double crossDifference(const TwoGroups& groups) {
  const auto& [one, two] = groups;
  return differenceOfProducts(one.x, two.n, two.x, one.n);
}

double differenceOfProportions(const TwoGroups& groups) {
  return crossDifference(groups) / groups.first.n / groups.second.n;
}

double unpooledVariance(const TwoGroups& groups, double less) {
  const auto& [one, two] = groups;
  return (two.f / two.n) * (two.x / two.n) / (two.n - less) +
         (one.f / one.n) * (one.x / one.n) / (one.n - less);
}

double waldCorrection(const TwoGroups& groups) { return groups.first.n + groups.second.n; }

double hauckAndersonCorrection(const TwoGroups& groups) {
  return std::max(groups.first.n, groups.second.n);
}

namespace {

GroupCounts plus(const GroupCounts& counts, double successes, double failures) {
  return {counts.x + successes, counts.f + failures, counts.n + successes + failures};
}

/// Score distances with Newcombe's (1998a) continuity correction. The group's bounds are neither
/// clipped to [0, 1] nor replaced at p = 0 or p = 1; a square root without a value makes a distance
/// a NaN.
ScoreDistances correctedScoreDistances(const GroupCounts& counts, double z) {
  const auto [x, f, n] = counts;
  const double p = x / n, q = f / n, z2 = z * z;
  const double k = z2 - 1.0 / n + 4.0 * p * f;
  const double d = 2.0 * (n + z2);
  // p - l and u - p with the terms in n·p cancelled by hand; 2p - 1 is p - q.
  return {((p - q) * z2 + z * std::sqrt(k + 4.0 * p - 2.0) + 1.0) / d,
          ((q - p) * z2 + z * std::sqrt(k - 4.0 * p + 2.0) + 1.0) / d};
}

/// Newcombe's (1998b) combination of two groups' distances.
Bounds combine(double difference, const ScoreDistances& one, const ScoreDistances& two) {
  return clip({difference - std::sqrt(one.below * one.below + two.above * two.above),
               difference + std::sqrt(one.above * one.above + two.below * two.below)},
              kDifferenceRange);
}

/// The difference ± (half + the correction), the correction put to the difference while both are
/// whole numbers, so that what is left of them has all its digits.
Bounds corrected(const TwoGroups& groups, double half, double correction) {
  const double n1 = groups.first.n, n2 = groups.second.n;
  const double twice = 2.0 * crossDifference(groups);
  return clip({(twice - correction) / (2.0 * n1) / n2 - half,
               (twice + correction) / (2.0 * n1) / n2 + half},
              kDifferenceRange);
}

}  // namespace

/// Agresti & Caffo (2000): one success and one failure added to each group.
Bounds agrestiCaffo(const TwoGroups& groups, const Level& level) {
  const TwoGroups more{plus(groups.first, 1.0, 1.0), plus(groups.second, 1.0, 1.0)};
  return symmetric(differenceOfProportions(more), level.z * std::sqrt(unpooledVariance(more)),
                   kDifferenceRange);
}

/// Brown & Li (2005), with the Jeffreys estimates. The variance divides by the plain trial counts
/// on purpose, although the proportions use n + 1.
Bounds brownLiJeffreys(const TwoGroups& groups, const Level& level) {
  const TwoGroups more{plus(groups.first, 0.5, 0.5), plus(groups.second, 0.5, 0.5)};
  return symmetric(differenceOfProportions(more), level.z * std::sqrt(unpooledVariance(more, 1.0)),
                   kDifferenceRange);
}

/// Hauck & Anderson (1986).
Bounds hauckAnderson(const TwoGroups& groups, const Level& level) {
  if (!bothAboveOne(groups)) return {};
  return corrected(groups, level.z * std::sqrt(unpooledVariance(groups, 1.0)),
                   hauckAndersonCorrection(groups));
}

/// Newcombe (1998b), method 10: hybrid score.
Bounds newcombe(const TwoGroups& groups, const Level& level) {
  const auto& [one, two] = groups;
  return combine(differenceOfProportions(groups), scoreDistances(one.x, one.f, one.n, level.z),
                 scoreDistances(two.x, two.f, two.n, level.z));
}

/// Newcombe (1998b), method 11: hybrid score with continuity correction.
Bounds newcombeCorrected(const TwoGroups& groups, const Level& level) {
  return combine(differenceOfProportions(groups), correctedScoreDistances(groups.first, level.z),
                 correctedScoreDistances(groups.second, level.z));
}

Bounds waldDifference(const TwoGroups& groups, const Level& level) {
  return symmetric(differenceOfProportions(groups), level.z * std::sqrt(unpooledVariance(groups)),
                   kDifferenceRange);
}

/// The Wald interval widened by (1/n1 + 1/n2) / 2 on both sides (Fleiss 1981).
Bounds waldDifferenceCorrected(const TwoGroups& groups, const Level& level) {
  return corrected(groups, level.z * std::sqrt(unpooledVariance(groups)), waldCorrection(groups));
}

}  // namespace proportions
