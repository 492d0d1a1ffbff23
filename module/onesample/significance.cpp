#include "module/onesample/significance.h"

#include <algorithm>
#include <cmath>

#include "module/math/arithmetic.h"
#include "module/math/binomial.h"

namespace proportions {
namespace {

/// The deviation x - n·p0 drawn half a trial towards 0, over a standard error of the count. A
/// difference of proportions below 1 / (2n) is no deviation at all.
TestResult correctedTest(const OneSampleCounts& counts, double p0, double standardError) {
  const double n = counts.n;
  const double d = deviation(counts.x, n, p0);
  if (1.0 / (n + n) > std::fabs(d / n)) return normalTest(0.0);
  return normalTest((d > 0.0 ? d - 0.5 : d + 0.5) / standardError);
}

/// Standard errors of the count: under the null hypothesis and at the estimate. The score tests use
/// the first whatever x is; the Wald tests use the second and are refused when an outcome was never
/// seen.
double nullError(const OneSampleCounts& counts, double p0) {
  return std::sqrt((1.0 - p0) * (counts.n * p0));
}
double estimatedError(const OneSampleCounts& counts) {
  return std::sqrt(counts.f / counts.n * counts.x);
}
bool bothOutcomes(const OneSampleCounts& counts) { return counts.x > 0.0 && counts.f > 0.0; }

}  // namespace

/// The exact binomial test; one-sided in the direction of the smaller tail, two-sided twice that.
TestResult exactBinomial(const OneSampleCounts& counts, double p0) {
  const double lower = atMost(counts.x, counts.n, p0);
  const double upper = atLeast(counts.x, counts.n, p0);
  if (isMissing(lower) || isMissing(upper)) return missingTest();
  return binomialTest(std::min(lower, upper));
}

/// Lancaster (1961): half the probability of the count itself is taken off the tail.
TestResult midPBinomial(const OneSampleCounts& counts, double p0) {
  const double lower = atMost(counts.x, counts.n, p0);
  const double upper = atLeast(counts.x, counts.n, p0);
  const double point = exactly(counts.x, counts.n, p0);
  if (isMissing(lower) || isMissing(upper) || isMissing(point)) return missingTest();
  return binomialTest(std::max(0.0, std::min(lower, upper) - 0.5 * point));
}

/// The score test: the standard error under the null hypothesis (de Moivre 1733; Rao 1948).
TestResult scoreTest(const OneSampleCounts& counts, double p0) {
  return normalTest(deviation(counts.x, counts.n, p0) / nullError(counts, p0));
}

TestResult scoreTestCorrected(const OneSampleCounts& counts, double p0) {
  return correctedTest(counts, p0, nullError(counts, p0));
}

/// Wald (1943): the standard error at the estimate.
TestResult waldTest(const OneSampleCounts& counts, double p0) {
  if (!bothOutcomes(counts)) return missingTest();
  return normalTest(deviation(counts.x, counts.n, p0) / estimatedError(counts));
}

TestResult waldTestCorrected(const OneSampleCounts& counts, double p0) {
  if (!bothOutcomes(counts)) return missingTest();
  return correctedTest(counts, p0, estimatedError(counts));
}

}  // namespace proportions
