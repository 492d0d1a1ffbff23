#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/distributions.h"
#include "reference_table.h"

namespace {

// A few units in the last place (2.2e-16): the exponents, up to 700, are held in extended precision
// and the last operations are those of doubles. The same bound holds for all counts.
constexpr double kTolerance = 4e-15;
constexpr int32_t kUntouched = 17;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using BinomialFunction = double (*)(double, double, double, int32_t&);
constexpr BinomialFunction kAll[] = {MCDistFun::CdfBin, MCDistFun::CdfBinUpper, MCDistFun::PdfBin};

double cdf(double k, double n, double p) {
  int32_t error = 0;
  const double value = MCDistFun::CdfBin(k, n, p, error);
  EXPECT_EQ(error, 0);
  return value;
}
double upper(double k, double n, double p) {
  int32_t error = 0;
  const double value = MCDistFun::CdfBinUpper(k, n, p, error);
  EXPECT_EQ(error, 0);
  return value;
}
double pdf(double k, double n, double p) {
  int32_t error = 0;
  const double value = MCDistFun::PdfBin(k, n, p, error);
  EXPECT_EQ(error, 0);
  return value;
}

TEST(Binomial, AgreesWithTheReference) {
  for (const auto& row : referenceRows("binomial.csv", 6)) {
    const double k = numberOf(row[0]), n = numberOf(row[1]), p = numberOf(row[2]);
    const std::string where = "k " + row[0] + " n " + row[1] + " p " + row[2];
    EXPECT_LE(distance(pdf(k, n, p), numberOf(row[3])), kTolerance) << "mass " << where;
    EXPECT_LE(distance(cdf(k, n, p), numberOf(row[4])), kTolerance) << "cumulative " << where;
    EXPECT_LE(distance(upper(k, n, p), numberOf(row[5])), kTolerance) << "upper " << where;
  }
}

TEST(Binomial, CountsBelowZeroAreNoError) {
  for (const double k : {-1.0, -0.5, -1e300, -kInfinity}) {
    EXPECT_EQ(cdf(k, 10, 0.3), 0);
    EXPECT_EQ(upper(k, 10, 0.3), 1);
    EXPECT_EQ(pdf(k, 10, 0.3), 0);
  }
}

TEST(Binomial, CountsAtOrAboveTheTrials) {
  for (const double k : {10.0, 11.0, 1e300, kInfinity}) {
    EXPECT_EQ(cdf(k, 10, 0.3), 1);
    EXPECT_EQ(upper(k, 10, 0.3), 0);
  }
  EXPECT_EQ(pdf(11, 10, 0.3), 0);
}

TEST(Binomial, NoTrials) {
  for (const double p : {0.0, 0.5, 1.0}) {
    EXPECT_EQ(pdf(0, 0, p), 1);
    EXPECT_EQ(pdf(1, 0, p), 0);
    EXPECT_EQ(cdf(0, 0, p), 1);
    EXPECT_EQ(cdf(-1, 0, p), 0);
    EXPECT_EQ(upper(-1, 0, p), 1);
    EXPECT_EQ(upper(0, 0, p), 0);
  }
}

TEST(Binomial, CertainProportions) {
  EXPECT_EQ(pdf(0, 5, 0), 1);
  EXPECT_EQ(pdf(1, 5, 0), 0);
  EXPECT_EQ(pdf(5, 5, 1), 1);
  EXPECT_EQ(pdf(4, 5, 1), 0);
  EXPECT_EQ(cdf(0, 5, 0), 1);
  EXPECT_EQ(cdf(4, 5, 1), 0);
  EXPECT_EQ(upper(0, 5, 0), 0);
  EXPECT_EQ(upper(4, 5, 1), 1);
}

TEST(Binomial, FractionalCountsHaveNoMassAndCountDownwards) {
  EXPECT_EQ(pdf(2.5, 10, 0.3), 0);
  EXPECT_EQ(cdf(2.5, 10, 0.3), cdf(2, 10, 0.3));
  EXPECT_EQ(upper(2.5, 10, 0.3), upper(2, 10, 0.3));
}

TEST(Binomial, ImpossibleArgumentsAreErrorsAndGiveTheMissingValue) {
  const double missing = MCMV::Missing();
  const double refused[][3] = {{kNan, 10, 0.5},   {3, kNan, 0.5},     {3, 10, kNan},
                               {3, -1, 0.5},      {3, 10, -1e-300},   {3, 10, 1.0000000000000002},
                               {3, kInfinity, 1}, {missing, 10, 0.5}, {3, missing, 0.5},
                               {3, 10, missing},  {3, 10.5, 0.5},     {3, 10, kInfinity}};
  for (const auto& [k, n, p] : refused) {
    for (const auto function : kAll) {
      int32_t error = 0;
      EXPECT_EQ(function(k, n, p, error), missing) << k << " " << n << " " << p;
      EXPECT_NE(error, 0) << k << " " << n << " " << p;
    }
  }
}

TEST(Binomial, SuccessLeavesTheErrorFlag) {
  for (const auto function : kAll) {
    for (const double k : {-1.0, 0.0, 4.0, 10.0, 11.0}) {
      int32_t error = kUntouched;
      function(k, 10, 0.3, error);
      EXPECT_EQ(error, kUntouched);
    }
  }
}

// The terms of a whole distribution, added up: independent of any reference table.
TEST(Binomial, MassesAddUpToTheDistributionFunction) {
  for (const double p : {0.5, 0.01, 0.93}) {
    double sum = 0;
    for (double k = 0; k <= 3000; ++k) {
      sum += pdf(k, 3000, p);
      // 3000 additions of at most half a unit of 1, relative to a sum that may be small.
      EXPECT_NEAR(sum, cdf(k, 3000, p), 2e-13 * sum + 1e-300) << k;
    }
  }
}

TEST(Binomial, MirrorsWhenSuccessAndFailureSwap) {
  for (double k = 0; k < 40; ++k) {
    EXPECT_LE(distance(cdf(k, 40, 0.25), upper(39 - k, 40, 0.75)), kTolerance);
    EXPECT_LE(distance(pdf(k, 40, 0.25), pdf(40 - k, 40, 0.75)), kTolerance);
  }
}

}  // namespace
