#include "module/paired/significance.h"

#include <cmath>

#include "module/math/half_sum.h"

namespace proportions::paired {
namespace {

constexpr double kNoDifference = 1e-12;

/// b - c moved towards 0 by 1, not by 1/2, on purpose; only a difference of 0 gives Z = 0 outright.
TestResult correctedTest(const Counts& counts, double variance) {
  const double difference = counts.b - counts.c;
  if (std::fabs(difference) < kNoDifference) return normalTest(0.0);
  return zTest(difference > 0.0 ? difference - 1.0 : difference + 1.0, variance);
}

}  // namespace

/// P(X <= m), m = min(b, c), X ~ binomial(b + c, 1/2): given the discordant pairs, either kind is
/// as likely as the other. Cochran (1950).
TestResult exact(const Counts& t) { return binomialTest(halfSum(t.least(), t.b + t.c, 1.0)); }

/// P(X <= m) - P(X = m)/2, m = min(b, c), X ~ binomial(b + c, 1/2). Lancaster (1961); Fagerland,
/// Lydersen & Laake (2013).
TestResult midP(const Counts& t) { return binomialTest(halfSum(t.least(), t.b + t.c, 0.5)); }

/// McNemar (1947).
TestResult mcNemar(const Counts& t) { return zTest(t.b - t.c, t.b + t.c); }

/// Edwards (1948).
TestResult mcNemarCorrected(const Counts& t) { return correctedTest(t, t.b + t.c); }

TestResult wald(const Counts& t) { return zTest(t.b - t.c, t.countVariance()); }

TestResult waldCorrected(const Counts& t) { return correctedTest(t, t.countVariance()); }

}  // namespace proportions::paired
