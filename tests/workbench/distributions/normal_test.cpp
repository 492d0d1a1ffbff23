#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/distributions.h"
#include "reference_table.h"

namespace {

// One unit in the last place: both functions are computed in extended precision and rounded once.
constexpr double kTolerance = 2.3e-16;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Normal, AgreesWithTheReference) {
  for (const auto& row : referenceRows("normal.csv", 3)) {
    const double argument = numberOf(row[1]);
    const double got =
        row[0] == "cumulative" ? MCDistFun::CdfStdNorm(argument) : MCDistFun::IdfStdNorm(argument);
    EXPECT_LE(distance(got, numberOf(row[2])), kTolerance) << row[0] << " " << row[1];
  }
}

TEST(Normal, ExactValues) {
  EXPECT_EQ(MCDistFun::CdfStdNorm(0), 0.5);
  EXPECT_EQ(MCDistFun::CdfStdNorm(-0.0), 0.5);
  EXPECT_EQ(MCDistFun::CdfStdNorm(-kInfinity), 0);
  EXPECT_EQ(MCDistFun::CdfStdNorm(kInfinity), 1);
  EXPECT_EQ(MCDistFun::IdfStdNorm(0.5), 0);
  // All the digits that tables print; the double 0.975 lies below 0.975, which shows in the next.
  EXPECT_NEAR(MCDistFun::IdfStdNorm(0.975), 1.959963984540054, 5e-16);
  EXPECT_EQ(MCDistFun::IdfStdNorm(0), -kInfinity);
  EXPECT_EQ(MCDistFun::IdfStdNorm(1), kInfinity);
}

TEST(Normal, RefusedArgumentsGiveTheMissingValue) {
  const double missing = MCMV::Missing();
  EXPECT_EQ(MCDistFun::CdfStdNorm(kNan), missing);
  EXPECT_EQ(MCDistFun::CdfStdNorm(missing), missing);
  for (const double p : {kNan, missing, -1e-300, 1.0000000000000002, kInfinity, -kInfinity}) {
    EXPECT_EQ(MCDistFun::IdfStdNorm(p), missing) << p;
  }
}

TEST(Normal, QuantileIsOdd) {
  for (const double p : {0.25, 0.375, 0.4375, 0.0078125, std::ldexp(1, -40)}) {
    EXPECT_EQ(MCDistFun::IdfStdNorm(p), -MCDistFun::IdfStdNorm(1 - p)) << p;
  }
}

TEST(Normal, QuantileOfTheLeastDoubles) {
  // Phi of the result is compared, because that is what a quantile promises.
  for (const double p : {5e-324, 1e-320, 1e-310}) {
    EXPECT_NEAR(MCDistFun::CdfStdNorm(MCDistFun::IdfStdNorm(p)) / p, 1, 0.01) << p;
  }
}

}  // namespace
