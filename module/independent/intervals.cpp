#include "module/independent/intervals.h"

#include <cmath>

#include "module/math/wilson.h"

namespace proportions::independent {
namespace {

/// Newcombe's (1998b) combination of two groups' distances.
Bounds combine(double difference, const ScoreDistances& one, const ScoreDistances& two) {
  return clip({difference - std::sqrt(one.below * one.below + two.above * two.above),
               difference + std::sqrt(one.above * one.above + two.below * two.below)},
              kDifferenceRange);
}

/// The difference ± (half + the correction), the correction put to the difference while both are
/// whole numbers, so that what is left of them has all its digits.
Bounds corrected(const Counts& counts, double half, double correction) {
  const double twice = 2.0 * counts.crossDifference();
  return clip({counts.perTrials(0.5 * (twice - correction)) - half,
               counts.perTrials(0.5 * (twice + correction)) + half},
              kDifferenceRange);
}

}  // namespace

/// Agresti & Caffo (2000): one success and one failure added to each group.
Bounds agrestiCaffo(const Counts& counts, const Level& level) {
  const Counts more = counts.plus(1.0);
  return symmetric(more.difference(), level.z * std::sqrt(more.variance()), kDifferenceRange);
}

/// Brown & Li (2005), with the Jeffreys estimates. The variance divides by the plain trial counts
/// on purpose, although the proportions use n + 1.
Bounds brownLiJeffreys(const Counts& counts, const Level& level) {
  const Counts more = counts.plus(0.5);
  return symmetric(more.difference(), level.z * std::sqrt(more.variance(1.0)), kDifferenceRange);
}

/// Hauck & Anderson (1986).
Bounds hauckAnderson(const Counts& counts, const Level& level) {
  if (!counts.bothAboveOne()) return {};
  return corrected(counts, level.z * std::sqrt(counts.variance(1.0)),
                   counts.hauckAndersonCorrection());
}

/// Newcombe (1998b), method 10: hybrid score.
Bounds newcombe(const Counts& counts, const Level& level) {
  return combine(counts.difference(), scoreDistances(counts.first, level.z),
                 scoreDistances(counts.second, level.z));
}

/// Newcombe (1998b), method 11: hybrid score with continuity correction.
Bounds newcombeCorrected(const Counts& counts, const Level& level) {
  return combine(counts.difference(), correctedScoreDistances(counts.first, level.z),
                 correctedScoreDistances(counts.second, level.z));
}

Bounds wald(const Counts& counts, const Level& level) {
  return symmetric(counts.difference(), level.z * std::sqrt(counts.variance()), kDifferenceRange);
}

/// The Wald interval widened by (1/n1 + 1/n2) / 2 on both sides (Fleiss 1981).
Bounds waldCorrected(const Counts& counts, const Level& level) {
  return corrected(counts, level.z * std::sqrt(counts.variance()), counts.waldCorrection());
}

}  // namespace proportions::independent
