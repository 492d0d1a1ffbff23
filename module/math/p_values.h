/// Tests: the value type, and what all tests with a binomial or a standard normal statistic share.
#pragma once

namespace proportions {

/// A statistic with its p values; each may be the missing value.
struct TestResult {
  double statistic;
  double oneSided;
  double twoSided;
};

/// A test that cannot be computed.
TestResult missingTest();

/// The p values of a binomial test: the two-sided one is twice the one-sided, at most 1. No
/// statistic; a missing p value stays missing.
TestResult binomialTest(double oneSided);

/// The p values of Z: one-sided the smaller tail, two-sided twice that. Both tails are asked of the
/// host, because 1 - Φ(Z) would lose all digits of a small upper tail. When either is missing, so
/// are the p values; a missing Z has none.
TestResult normalTest(double z);

/// The test with Z = deviation / sqrt(variance); missing unless the variance is positive.
TestResult zTest(double deviation, double variance);

}  // namespace proportions
