#include "module/onesample/significance.h"

#include <algorithm>

#include "module/math/arithmetic.h"
#include "module/math/binomial.h"

namespace proportions::onesample {
namespace {

/// The deviation x - n·p0 moved half a trial towards 0 and not past it. The count is moved rather
/// than the deviation, whose last digits are few beside a tie.
double movedDeviation(const Counts& counts, double p0) {
  const auto [x, f, n] = counts;
  return deviation(x, n, p0) > 0.0 ? std::max(deviation(x - 0.5, n, p0), 0.0)
                                   : std::min(deviation(x + 0.5, n, p0), 0.0);
}

/// Variances of the count: under the null hypothesis and at the estimate. The score tests use the
/// first whatever x is; the Wald tests use the second and are refused when an outcome was never
/// seen.
double nullCountVariance(const Counts& counts, double p0) { return (1.0 - p0) * (counts.n * p0); }
double countVariance(const Counts& counts) { return counts.q() * counts.x; }

}  // namespace

/// The exact binomial test; one-sided in the direction of the smaller tail, two-sided twice that.
TestResult exact(const Counts& counts, double p0) {
  const double lower = atMost(counts.x, counts.n, p0);
  const double upper = atLeast(counts.x, counts.n, p0);
  if (isMissing(lower) || isMissing(upper)) return missingTest();
  return binomialTest(std::min(lower, upper));
}

/// Lancaster (1961): half the probability of the count itself is taken off the tail.
TestResult midP(const Counts& counts, double p0) {
  const double lower = atMost(counts.x, counts.n, p0);
  const double upper = atLeast(counts.x, counts.n, p0);
  const double point = exactly(counts.x, counts.n, p0);
  if (isMissing(lower) || isMissing(upper) || isMissing(point)) return missingTest();
  return binomialTest(std::max(0.0, std::min(lower, upper) - 0.5 * point));
}

/// The score test: the standard error under the null hypothesis (de Moivre 1733; Rao 1948).
TestResult score(const Counts& counts, double p0) {
  return zTest(deviation(counts.x, counts.n, p0), nullCountVariance(counts, p0));
}

TestResult scoreCorrected(const Counts& counts, double p0) {
  return zTest(movedDeviation(counts, p0), nullCountVariance(counts, p0));
}

/// Wald (1943): the standard error at the estimate.
TestResult wald(const Counts& counts, double p0) {
  if (!counts.hasBothOutcomes()) return missingTest();
  return zTest(deviation(counts.x, counts.n, p0), countVariance(counts));
}

TestResult waldCorrected(const Counts& counts, double p0) {
  if (!counts.hasBothOutcomes()) return missingTest();
  return zTest(movedDeviation(counts, p0), countVariance(counts));
}

}  // namespace proportions::onesample
