#include "module/onesample/significance.h"

#include <algorithm>
#include <cmath>

#include "module/math/arithmetic.h"
#include "module/math/binomial.h"

namespace proportions {
namespace {

/// The deviation x - n·p0 moved half a trial towards 0 and not past it, over a standard error of
/// the count. The count is moved rather than the deviation, whose last digits are few beside a tie.
TestResult correctedTest(const OneSampleCounts& counts, double p0, double standardError) {
  const auto [x, f, n] = counts;
  const double moved = deviation(x, n, p0) > 0.0 ? std::max(deviation(x - 0.5, n, p0), 0.0)
                                                 : std::min(deviation(x + 0.5, n, p0), 0.0);
  return normalTest(moved / standardError);
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
