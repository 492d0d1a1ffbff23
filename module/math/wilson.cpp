#include "module/math/wilson.h"

#include <cmath>

#include "module/math/level.h"

namespace proportions {
namespace {

/// z² - 1/n + 4npq ± (4p - 2), whose roots the corrected bounds have.
struct CorrectedRoots {
  double lower;
  double upper;
};
CorrectedRoots correctedRoots(const Sample& sample, double z) {
  const double p = sample.p();
  const double k = z * z - 1.0 / sample.n + 4.0 * p * sample.f;
  return {std::sqrt(k + 4.0 * p - 2.0), std::sqrt(k - 4.0 * p + 2.0)};
}

}  // namespace

double scoreHalfWidth(const Sample& sample, double z) {
  const double n = sample.n;
  return z * std::sqrt(z * z / (n * 4 * n) + sample.q() * sample.p() / n);
}

/// (m - h) / d and (m + h) / d. The lower bound equals p² / (m + h), and 1 less the upper one
/// is the same for the failures: without the differences the bounds keep their digits.
Bounds scoreBounds(const Sample& sample, double z) {
  if (z == kInfiniteZ) return kProportionRange;  // p² / (m + h) would come out as 1e-200, not as 0
  const double n = sample.n, p = sample.p(), q = sample.q(), z2 = z * z;
  const double h = scoreHalfWidth(sample, z);
  const double m0 = z2 / (n + n);
  const double d = z2 / n + 1;
  const auto lower = [m0, h](double share) {
    return share > 0.0 ? share * share / (m0 + share + h) : 0.0;
  };
  return {lower(p), q < p ? 1.0 - lower(q) : (m0 + p + h) / d};
}

/// The smaller distance comes from the product of the two, z²·p·q / n / d, since the difference
/// that it is would lose its digits towards p = 0 and p = 1, where it is 0.
ScoreDistances scoreDistances(const Sample& sample, double z) {
  const double n = sample.n, p = sample.p(), q = sample.q(), z2 = z * z;
  const double h = scoreHalfWidth(sample, z);
  const double shift = z2 / n * (p - 0.5);
  const double d = z2 / n + 1;
  const double sum = h + std::fabs(shift);
  const double larger = sum / d;
  const double smaller = sum == 0.0 ? 0.0 : z2 * p * q / n / sum;
  return shift < 0.0 ? ScoreDistances{smaller, larger} : ScoreDistances{larger, smaller};
}

Bounds correctedScoreBounds(const Sample& sample, double z) {
  const auto [lower, upper] = correctedRoots(sample, z);
  const double z2 = z * z, twice = 2.0 * sample.x + z2, d = 2.0 * (sample.n + z2);
  return {(twice - (1.0 + z * lower)) / d, (twice + (1.0 + z * upper)) / d};
}

/// p - l and u - p with the terms in n·p cancelled by hand; 2p - 1 is p - q.
ScoreDistances correctedScoreDistances(const Sample& sample, double z) {
  const auto [lower, upper] = correctedRoots(sample, z);
  const double p = sample.p(), q = sample.q(), z2 = z * z, d = 2.0 * (sample.n + z2);
  return {((p - q) * z2 + z * lower + 1.0) / d, ((q - p) * z2 + z * upper + 1.0) / d};
}

}  // namespace proportions
