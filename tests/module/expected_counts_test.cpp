// Counts that are what the test value lets expect, and ties of the continuity correction: the test
// value is a decimal that its double only comes close to.
#include <gtest/gtest.h>

#include <cmath>

#include "module/independent/intervals.h"
#include "module/independent/significance.h"
#include "module/math/arithmetic.h"
#include "module/onesample/estimates.h"
#include "module/onesample/intervals.h"
#include "module/onesample/significance.h"

namespace proportions {
namespace {

onesample::Counts counts(double x, double n) { return {x, n - x, n}; }

/// Calls with every n and every p0 of two decimals for which `times`·n·p0 is whole.
template <typename Check>
void forWholeProducts(int times, const Check& check) {
  for (int n = 2; n <= 300; ++n) {
    for (int hundredths = 1; hundredths < 100; ++hundredths) {
      const int product = times * n * hundredths;
      if (product % 100 == 0) check(product / 100, n, hundredths / 100.0);
    }
  }
}

TEST(ExpectedCounts, AreNoDeviation) {
  int checked = 0;
  forWholeProducts(1, [&checked](int x, int n, double p0) {
    const std::string where = std::to_string(x) + "/" + std::to_string(n);
    PropZOneSamp record;
    record.numSuccesses = x, record.numFailures = n - x, record.numTrials = n;
    onesample::estimate(record, p0);
    EXPECT_EQ(record.estimatedDifference, 0.0) << where;
    EXPECT_EQ(onesample::score(counts(x, n), p0).statistic, 0.0) << where;
    EXPECT_EQ(onesample::wald(counts(x, n), p0).statistic, 0.0) << where;
    ++checked;
  });
  EXPECT_GT(checked, 1000);
}

TEST(ExpectedCounts, HalfACaseBesideIsATie) {
  int checked = 0;
  forWholeProducts(2, [&checked](int twice, int n, double p0) {
    if (twice % 2 == 0) return;
    for (const int x : {(twice - 1) / 2, (twice + 1) / 2}) {
      const std::string where = std::to_string(x) + "/" + std::to_string(n);
      EXPECT_EQ(onesample::scoreCorrected(counts(x, n), p0).statistic, 0.0) << where;
      if (x == 0 || x == n) continue;
      EXPECT_EQ(onesample::waldCorrected(counts(x, n), p0).statistic, 0.0) << where;
    }
    ++checked;
  });
  EXPECT_GT(checked, 100);
}

TEST(ExpectedCounts, ATestValueBesideTheDecimalDeviates) {
  const double p0 = std::nextafter(std::nextafter(0.28, 1.0), 1.0);
  EXPECT_LT(onesample::score(counts(7, 25), p0).statistic, 0.0);
  // 25·p0 is exact in two parts; the deviation has all its digits.
  EXPECT_EQ(deviation(7, 25, p0), (7 - 25 * p0) - std::fma(25, p0, -25 * p0));
}

Sample group(double x, double n) { return {x, n - x, n}; }

TEST(ExpectedCounts, TiesOfTwoGroups) {
  // |p1 - p2| = (1/n1 + 1/n2) / 2 exactly where 2·(x1·n2 - x2·n1) = n1 + n2.
  int checked = 0;
  for (int n1 = 2; n1 <= 40; ++n1) {
    for (int n2 = 2; n2 <= 40; ++n2) {
      for (int x1 = 1; x1 < n1; ++x1) {
        const int twice = 2 * x1 * n2 - (n1 + n2);
        if (twice < 0 || twice % (2 * n1) != 0) continue;
        const independent::Counts tie{group(x1, n1), group(twice / (2 * n1), n2)};
        const independent::Counts swapped{tie.second, tie.first};
        for (const independent::Test test : {independent::Test(independent::waldCorrected),
                                             independent::Test(independent::waldH0Corrected)}) {
          for (const double z : {test(tie).statistic, test(swapped).statistic}) {
            EXPECT_EQ(z, 0.0) << x1 << '/' << n1 << ' ' << tie.second.x << '/' << n2;
            EXPECT_FALSE(std::signbit(z));
          }
        }
        ++checked;
      }
    }
  }
  EXPECT_GT(checked, 100);
}

TEST(ExpectedCounts, HauckAndersonTies) {
  // |p1 - p2| = 1 / (2·min(n1, n2)): 3/4 against 5/8.
  EXPECT_EQ(independent::hauckAnderson({group(3, 4), group(5, 8)}).statistic, 0.0);
  EXPECT_EQ(independent::hauckAnderson({group(5, 8), group(3, 4)}).statistic, 0.0);
}

TEST(ExpectedCounts, ATieWithoutVarianceHasNoStatistic) {
  EXPECT_TRUE(isMissing(independent::waldCorrected({group(1, 1), group(0, 1)}).statistic));
}

TEST(ExpectedCounts, AlmostATieOfHugeGroups) {
  // 2·(x1·n2 - x2·n1) - (n1 + n2) = 1 with counts next to 2^52: nothing of it is rounded away.
  const double n2 = 4503599627370496.0, n1 = n2 - 1;
  const double moved = 0.5 / n1 / n2;
  const double error = std::sqrt(1 / n1 * ((n1 - 1) / n1) / n1);
  const double z = independent::waldCorrected({group(1, n1), group(0, n2)}).statistic;
  EXPECT_NEAR(z / (moved / error), 1, 1e-15);
  EXPECT_EQ(independent::waldCorrected({group(0, n2), group(1, n1)}).statistic, -z);
  EXPECT_EQ(independent::waldCorrected({group(1, n2), group(0, n2)}).statistic, 0.0);
}

}  // namespace
}  // namespace proportions
