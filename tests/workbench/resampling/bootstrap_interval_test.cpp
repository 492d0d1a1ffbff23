#include "workbench/resampling/bootstrap_interval.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "../distributions/reference_table.h"
#include "host/constants.h"

namespace workbench {
namespace {

constexpr double kClose = 1e-12;

TEST(BootstrapInterval, AgreesWithThePublishedFormulas) {
  for (const auto& row : referenceRows("bootstrap.csv", 10)) {
    const double x = numberOf(row[0]), n = numberOf(row[1]);
    std::vector<double> samples;
    std::istringstream successes(row[3]);
    for (double s = 0; successes >> s;) samples.push_back(s / n);
    const BootstrapSummary summary = summarizeBootstrap(
        x / n, samples, {{(x - 1) / (n - 1), x}, {x / (n - 1), n - x}}, numberOf(row[2]));
    const std::string where = row[0] + "/" + row[1] + " at " + row[2];
    EXPECT_NEAR(summary.bias, numberOf(row[4]), 1e-15) << where;
    EXPECT_LT(distance(summary.standardError, numberOf(row[5])), kClose) << where;
    EXPECT_LT(distance(summary.percentileLower, numberOf(row[6])), kClose) << where;
    EXPECT_LT(distance(summary.percentileUpper, numberOf(row[7])), kClose) << where;
    EXPECT_LT(distance(summary.bcaLower, numberOf(row[8])), kClose) << where;
    EXPECT_LT(distance(summary.bcaUpper, numberOf(row[9])), kClose) << where;
  }
}

TEST(BootstrapInterval, QuantilesAreOfTypeSix) {
  const std::vector<double> values{1, 2, 4, 8};
  EXPECT_EQ(quantileType6(values, 0.0), 1);
  EXPECT_EQ(quantileType6(values, 0.2), 1);
  EXPECT_DOUBLE_EQ(quantileType6(values, 0.3), 1.5);
  EXPECT_DOUBLE_EQ(quantileType6(values, 0.5), 3);
  EXPECT_EQ(quantileType6(values, 0.8), 8);
  EXPECT_EQ(quantileType6(values, 1.0), 8);
  EXPECT_EQ(quantileType6({}, 0.5), kSystemMissing);
}

TEST(BootstrapInterval, LeavesOutSamplesWithoutAValue) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const BootstrapSummary all = summarizeBootstrap(2, {1, 2, 3, 4}, {}, 50);
  const BootstrapSummary some =
      summarizeBootstrap(2, {kSystemMissing, 4, 1, nan, 3, 2, kSystemMissing}, {}, 50);
  EXPECT_EQ(some.computed, 4);
  EXPECT_EQ(some.standardError, all.standardError);
  EXPECT_EQ(some.percentileLower, all.percentileLower);
  EXPECT_EQ(some.bcaUpper, all.bcaUpper);
}

TEST(BootstrapInterval, IsMissingWithoutAStatisticOrASecondSample) {
  for (const BootstrapSummary& summary :
       {summarizeBootstrap(kSystemMissing, {1, 2, 3}, {}, 95),
        summarizeBootstrap(1, {1, kSystemMissing}, {}, 95), summarizeBootstrap(1, {}, {}, 95)}) {
    EXPECT_EQ(summary.bias, kSystemMissing);
    EXPECT_EQ(summary.standardError, kSystemMissing);
    EXPECT_EQ(summary.percentileLower, kSystemMissing);
    EXPECT_EQ(summary.bcaUpper, kSystemMissing);
  }
}

TEST(BootstrapInterval, BcaIsMissingOutsideAllSamples) {
  const BootstrapSummary summary = summarizeBootstrap(9, {1, 2, 3}, {{8, 2}, {9, 1}}, 95);
  EXPECT_EQ(summary.bcaLower, kSystemMissing);
  EXPECT_EQ(summary.bcaUpper, kSystemMissing);
  EXPECT_EQ(summary.percentileLower, 1);
  EXPECT_EQ(summary.percentileUpper, 3);
}

TEST(BootstrapInterval, AllAlikeIsAPoint) {
  const BootstrapSummary summary = summarizeBootstrap(0, {0, 0, 0}, {{0, 50}}, 95);
  EXPECT_EQ(summary.standardError, 0);
  EXPECT_EQ(summary.bcaLower, 0);
  EXPECT_EQ(summary.bcaUpper, 0);
}

TEST(BootstrapInterval, CasesLeftOutCountAsOftenAsTheyAreThere) {
  EXPECT_DOUBLE_EQ(acceleration({{1, 3}, {2, 1}}),
                   acceleration({{1, 1}, {2, 1}, {1, 1}, {1, 1}, {kSystemMissing, 5}}));
}

}  // namespace
}  // namespace workbench
