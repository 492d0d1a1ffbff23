#include "module/independent/significance.h"

#include <cmath>

#include "module/math/missing.h"

namespace proportions {
namespace {

/// (1/n1 + 1/n2)·p̄(1 - p̄) with the pooled proportion p̄.
double pooledVariance(const TwoGroups& groups) {
  const auto& [one, two] = groups;
  const double n = one.n + two.n;
  const double pooled = ((two.x + one.x) / n) * ((two.f + one.f) / n);
  return (1.0 / one.n + 1.0 / two.n) * pooled;
}

TestResult plainTest(double difference, double variance) {
  if (!(variance > 0.0)) return missingTest();
  return normalTest(difference / std::sqrt(variance));
}

/// The difference moved towards 0 by the correction; Z = 0, whatever the variance, when that would
/// move it past 0. The comparison is one of whole numbers, without rounding up to 2^52. `variance`
/// is missing when it must not be used.
TestResult correctedTest(const TwoGroups& groups, double correction, double variance) {
  const double cross = crossDifference(groups);
  const double rest = 2.0 * std::fabs(cross) - correction;
  if (rest < 0.0) return normalTest(0.0);
  const double moved = cross > 0.0 ? rest : 0.0 - rest;  // a tie is 0, not -0
  return plainTest(moved / (2.0 * groups.first.n) / groups.second.n, variance);
}

}  // namespace

/// Hauck & Anderson (1986); needs more than one trial in each group unless its Z is 0 outright.
TestResult hauckAndersonTest(const TwoGroups& groups) {
  const double variance = bothAboveOne(groups) ? unpooledVariance(groups, 1.0) : kSystemMissing;
  return correctedTest(groups, hauckAndersonCorrection(groups), variance);
}

TestResult waldDifferenceTest(const TwoGroups& groups) {
  return plainTest(differenceOfProportions(groups), unpooledVariance(groups));
}

TestResult waldDifferenceTestCorrected(const TwoGroups& groups) {
  return correctedTest(groups, waldCorrection(groups), unpooledVariance(groups));
}

/// The test with the pooled variance, whose square is Pearson's (1900) chi-square.
TestResult pooledTest(const TwoGroups& groups) {
  return plainTest(differenceOfProportions(groups), pooledVariance(groups));
}

/// Its square is the chi-square with the correction of Yates (1934).
TestResult pooledTestCorrected(const TwoGroups& groups) {
  return correctedTest(groups, waldCorrection(groups), pooledVariance(groups));
}

}  // namespace proportions
