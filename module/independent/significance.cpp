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

/// The difference drawn towards 0 by the correction; Z = 0, whatever the variance, when the
/// correction is larger. `variance` is missing when it must not be used.
TestResult correctedTest(double difference, double correction, double variance) {
  if (correction > std::fabs(difference)) return normalTest(0.0);
  return plainTest(difference > 0.0 ? difference - correction : difference + correction, variance);
}

}  // namespace

/// Hauck & Anderson (1986); needs more than one trial in each group unless its Z is 0 outright.
TestResult hauckAndersonTest(const TwoGroups& groups) {
  const double variance = bothAboveOne(groups) ? unpooledVariance(groups, 1.0) : kSystemMissing;
  return correctedTest(differenceOfProportions(groups), hauckAndersonCorrection(groups), variance);
}

TestResult waldDifferenceTest(const TwoGroups& groups) {
  return plainTest(differenceOfProportions(groups), unpooledVariance(groups));
}

TestResult waldDifferenceTestCorrected(const TwoGroups& groups) {
  return correctedTest(differenceOfProportions(groups), waldCorrection(groups),
                       unpooledVariance(groups));
}

/// The test with the pooled variance, whose square is Pearson's (1900) chi-square.
TestResult pooledTest(const TwoGroups& groups) {
  return plainTest(differenceOfProportions(groups), pooledVariance(groups));
}

/// Its square is the chi-square with the correction of Yates (1934).
TestResult pooledTestCorrected(const TwoGroups& groups) {
  return correctedTest(differenceOfProportions(groups), waldCorrection(groups),
                       pooledVariance(groups));
}

}  // namespace proportions
