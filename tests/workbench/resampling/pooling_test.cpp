#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "../distributions/reference_table.h"
#include "host/constants.h"
#include "workbench/pooling/rubin.h"

namespace workbench {
namespace {

constexpr double kClose = 1e-12;

std::vector<ImputedEstimate> proportions(const std::string& successes, double n) {
  std::vector<ImputedEstimate> imputations;
  std::istringstream in(successes);
  for (double x = 0; in >> x;) imputations.push_back({x / n, x / n * (1 - x / n) / n});
  return imputations;
}

TEST(Pooling, AgreesWithThePublishedFormulas) {
  for (const auto& row : referenceRows("pooling.csv", 16)) {
    const double n = numberOf(row[0]), level = numberOf(row[2]);
    const PooledEstimate pooled = poolEstimates(proportions(row[1], n), n - 1, level);
    const PooledBounds wilson = pooledWilson(pooled, n, level);
    const double got[] = {pooled.estimate,
                          pooled.within,
                          pooled.between,
                          pooled.total,
                          pooled.standardError,
                          pooled.df,
                          pooled.lower,
                          pooled.upper,
                          pooled.relativeIncrease,
                          pooled.missingInformation,
                          pooled.efficiency,
                          wilson.lower,
                          wilson.upper};
    for (size_t i = 0; i < std::size(got); ++i) {
      const double want = numberOf(row[3 + i]);
      // A variance between that is 0 in exact arithmetic may be one of rounding.
      EXPECT_NEAR(got[i], want, kClose * std::max(std::fabs(want), 1e-16))
          << row[0] << ' ' << row[1] << " at " << row[2] << ", number " << i;
    }
  }
}

TEST(Pooling, AgreesWithAnotherProgram) {
  for (const auto& row : referenceRows("r_mice.csv", 9)) {
    const double n = numberOf(row[0]);
    const PooledEstimate pooled = poolEstimates(proportions(row[1], n), n - 1, 95);
    const double got[] = {
        pooled.estimate, pooled.within,           pooled.between,           pooled.total,
        pooled.df,       pooled.relativeIncrease, pooled.missingInformation};
    for (size_t i = 0; i < std::size(got); ++i) {
      const double want = numberOf(row[2 + i]);
      EXPECT_NEAR(got[i], want, kClose * std::fabs(want)) << row[0] << ", number " << i;
    }
  }
}

TEST(Pooling, OneImputationIsNotPooled) {
  const PooledEstimate pooled = poolEstimates({{0.5, 0.01}}, 24, 95);
  EXPECT_EQ(pooled.estimate, kSystemMissing);
  EXPECT_EQ(pooled.upper, kSystemMissing);
  EXPECT_EQ(pooledWilson(pooled, 25, 95).lower, kSystemMissing);
}

TEST(Pooling, AMissingEstimateOrVarianceIsNotPooled) {
  EXPECT_EQ(poolEstimates({{0.5, 0.01}, {kSystemMissing, 0.01}}, 24, 95).df, kSystemMissing);
  EXPECT_EQ(poolEstimates({{0.5, 0.01}, {0.5, kSystemMissing}}, 24, 95).df, kSystemMissing);
  EXPECT_EQ(poolEstimates({{0.5, std::nan("")}, {0.5, 0.01}}, 24, 95).df, kSystemMissing);
}

TEST(Pooling, WithoutAnyVarianceTheIntervalIsAPoint) {
  const PooledEstimate pooled = poolEstimates({{0, 0}, {0, 0}, {0, 0}}, 24, 95);
  EXPECT_EQ(pooled.standardError, 0);
  EXPECT_EQ(pooled.lower, 0);
  EXPECT_EQ(pooled.upper, 0);
  const PooledBounds wilson = pooledWilson(pooled, 25, 95);
  EXPECT_EQ(wilson.lower, 0);
  EXPECT_GT(wilson.upper, 0.1);
}

TEST(Pooling, EqualEstimatesHaveThemselvesAsMeanAndNoVarianceBetween) {
  for (size_t m = 2; m <= 60; ++m) {
    for (const double p : {1.0, 0.3, 0.1, 2.0 / 3, 29.0 / 30, -0.7}) {
      const double variance = std::fabs(p) * (1 - std::fabs(p)) / 30;
      const PooledEstimate pooled =
          poolEstimates(std::vector<ImputedEstimate>(m, {p, variance}), 29, 95);
      EXPECT_EQ(pooled.estimate, p) << m;
      EXPECT_EQ(pooled.within, variance) << m;
      EXPECT_EQ(pooled.between, 0) << m;
      EXPECT_EQ(pooled.relativeIncrease, 0) << m;
      EXPECT_GT(pooled.df, 0) << m;
    }
  }
}

TEST(Pooling, DifferencesThatOnlyRoundingTellsApartHaveNoVarianceBetween) {
  // All are 1/10, as the difference of two proportions of ten.
  std::vector<ImputedEstimate> imputations;
  for (double x = 0; x < 10; ++x) imputations.push_back({(x + 1) / 10 - x / 10, 0.01});
  ASSERT_NE(imputations[1].estimate, imputations[2].estimate);
  const PooledEstimate pooled = poolEstimates(imputations, 18, 95);
  EXPECT_EQ(pooled.between, 0);
  EXPECT_LT(distance(pooled.estimate, 0.1), kClose);
  // What differs in the last of 2^50 cases does have one.
  EXPECT_GT(poolEstimates({{0.5, 0.01}, {0.5 + std::ldexp(1, -50), 0.01}}, 18, 95).between, 0);
}

TEST(Pooling, TheWilsonIntervalStaysWithinItsRangeAndMirrors) {
  for (const double n : {1.0, 3.0, 7.0, 10.0, 25.0, 1e3, 1e7}) {
    for (size_t m = 2; m <= 20; ++m) {
      const auto wilson = [&](double p) {
        const std::vector<ImputedEstimate> all(m, {p, 0});
        return pooledWilson(poolEstimates(all, n + 1, 95), n, 95);
      };
      EXPECT_EQ(wilson(1).upper, 1) << n << ' ' << m;
      EXPECT_EQ(wilson(0).lower, 0) << n << ' ' << m;
      EXPECT_NEAR(wilson(1).lower, 1 - wilson(0).upper, 1e-15) << n << ' ' << m;
      EXPECT_NEAR(wilson(0.75).upper, 1 - wilson(0.25).lower, 1e-15) << n << ' ' << m;
    }
  }
}

TEST(Pooling, WithoutVarianceWithinThereIsNoInterval) {
  const PooledEstimate pooled = poolEstimates({{0, 0}, {1, 0}}, 24, 95);
  EXPECT_EQ(pooled.relativeIncrease, std::numeric_limits<double>::infinity());
  EXPECT_EQ(pooled.missingInformation, 1);
  EXPECT_EQ(pooled.lower, kSystemMissing);
}

TEST(Pooling, StudentsQuantileHasItsLimits) {
  EXPECT_LT(distance(twoSidedT(1, 50), 1), kClose);
  EXPECT_LT(distance(twoSidedT(2, 95), 4.302652729749464), kClose);
  EXPECT_LT(distance(twoSidedT(1e12, 95), 1.959963984542430), 1e-11);
  EXPECT_LT(distance(twoSidedT(std::numeric_limits<double>::infinity(), 95), 1.959963984540054),
            kClose);
  EXPECT_EQ(twoSidedT(0, 95), kSystemMissing);
}

}  // namespace
}  // namespace workbench
