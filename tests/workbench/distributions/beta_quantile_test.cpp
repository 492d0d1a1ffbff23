#include <gtest/gtest.h>

#include <limits>

#include "host/distributions.h"
#include "reference_table.h"

namespace {

// Two units in the last place; shapes far below 1/2, whose quantile is the 1/a-th power of a
// probability, cost 1/a times as much in extended precision.
constexpr double kTolerance = 4e-16;
constexpr double kTinyShapeTolerance = 2e-14;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(BetaQuantile, AgreesWithTheReference) {
  for (const auto& row : referenceRows("beta_quantile.csv", 5)) {
    const double q = numberOf(row[0]), a = numberOf(row[1]), b = numberOf(row[2]);
    const double bound = a < 0.5 || b < 0.5 ? kTinyShapeTolerance : kTolerance;
    EXPECT_LE(distance(MCDistFun::IdfBeta(q, a, b), numberOf(row[3])), bound)
        << "q " << row[0] << " a " << row[1] << " b " << row[2];
    EXPECT_LE(distance(MCDistFun::IdfBetaUpper(q, a, b), numberOf(row[4])), bound)
        << "upper q " << row[0] << " a " << row[1] << " b " << row[2];
  }
}

TEST(BetaQuantile, EndsOfTheRange) {
  for (const double a : {0.001, 0.5, 1.0, 1e15}) {
    EXPECT_EQ(MCDistFun::IdfBeta(0.0, a, 3.0), 0);
    EXPECT_EQ(MCDistFun::IdfBeta(1.0, a, 3.0), 1);
    EXPECT_EQ(MCDistFun::IdfBetaUpper(0.0, a, 3.0), 1);
    EXPECT_EQ(MCDistFun::IdfBetaUpper(1.0, a, 3.0), 0);
  }
}

TEST(BetaQuantile, UniformShapesGiveTheProbability) {
  for (const double q : {5e-324, 1e-300, 1e-9, 0.1, 0.25, 0.5, 0.7, 0.999}) {
    EXPECT_LE(distance(MCDistFun::IdfBeta(q, 1.0, 1.0), q), kTolerance) << q;
  }
}

TEST(BetaQuantile, ImpossibleArgumentsGiveTheMissingValue) {
  const double missing = MCMV::Missing();
  const double refused[][3] = {{kNan, 1, 1},        {0.5, kNan, 1},      {0.5, 1, kNan},
                               {0.5, 0, 1},         {0.5, 1, 0},         {0.5, -1, 1},
                               {0.5, 1, -2},        {-1e-300, 1, 1},     {1.0000000000000002, 1, 1},
                               {0.5, kInfinity, 1}, {0.5, 1, kInfinity}, {missing, 1, 1},
                               {0.5, missing, 1},   {0.5, 1, missing},   {0, 0, 1},
                               {1, 1, kNan}};
  for (const auto& [q, a, b] : refused) {
    EXPECT_EQ(MCDistFun::IdfBeta(q, a, b), missing) << q << " " << a << " " << b;
    EXPECT_EQ(MCDistFun::IdfBetaUpper(q, a, b), missing) << q << " " << a << " " << b;
  }
}

TEST(BetaQuantile, GrowsWithTheProbability) {
  for (const double a : {0.01, 0.5, 3.0, 1e4, 1e9}) {
    for (const double b : {0.01, 0.5, 40.0, 1e6}) {
      double last = 0;
      for (int step = 1; step < 200; ++step) {
        const double q = step / 200.0;
        const double x = MCDistFun::IdfBeta(q, a, b);
        EXPECT_GE(x, last) << q << " " << a << " " << b;
        EXPECT_LE(x, 1);
        last = x;
      }
    }
  }
}

}  // namespace
