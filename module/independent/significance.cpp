#include "module/independent/significance.h"

#include <cmath>

#include "module/math/missing.h"

namespace proportions::independent {
namespace {

/// The difference moved towards 0 by the correction; Z = 0, whatever the variance, when that would
/// move it past 0. The comparison is one of whole numbers, without rounding up to 2^52. `variance`
/// is missing when it must not be used.
TestResult correctedTest(const Counts& counts, double correction, double variance) {
  const double cross = counts.crossDifference();
  const double rest = 2.0 * std::fabs(cross) - correction;
  if (rest < 0.0) return normalTest(0.0);
  const double moved = cross > 0.0 ? rest : 0.0 - rest;  // a tie is 0, not -0
  return zTest(counts.perTrials(0.5 * moved), variance);
}

}  // namespace

/// Hauck & Anderson (1986); needs more than one trial in each group unless its Z is 0 outright.
TestResult hauckAnderson(const Counts& counts) {
  const double variance = counts.bothAboveOne() ? counts.variance(1.0) : kSystemMissing;
  return correctedTest(counts, counts.hauckAndersonCorrection(), variance);
}

TestResult wald(const Counts& counts) { return zTest(counts.difference(), counts.variance()); }

TestResult waldCorrected(const Counts& counts) {
  return correctedTest(counts, counts.waldCorrection(), counts.variance());
}

/// The test with the pooled variance, whose square is Pearson's (1900) chi-square.
TestResult waldH0(const Counts& counts) {
  return zTest(counts.difference(), counts.pooledVariance());
}

/// Its square is the chi-square with the correction of Yates (1934).
TestResult waldH0Corrected(const Counts& counts) {
  return correctedTest(counts, counts.waldCorrection(), counts.pooledVariance());
}

}  // namespace proportions::independent
