#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/distributions.h"
#include "reference_table.h"

namespace {

constexpr double kStep = 1e-6;
constexpr double kTolerance = 1e-12;
// The tolerance that is asked for, and the error of the tail's quadrature, about 1e-12 as well.
constexpr double kBound = 4e-12;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Noncentrality, AgreesWithTheReference) {
  for (const auto& row : referenceRows("noncentrality.csv", 4)) {
    const double want = numberOf(row[3]);
    const double got = MCDistFun::FindNCParamT(numberOf(row[0]), numberOf(row[1]), numberOf(row[2]),
                                               kStep, kTolerance);
    EXPECT_LE(std::fabs(got - want), kBound * std::fmax(1, std::fabs(want)))
        << "t " << row[0] << " df " << row[1] << " p " << row[2];
  }
}

// At t = 0 the sign of the normal numerator decides, so that d is a normal quantile for any df.
TEST(Noncentrality, AtZeroItIsANormalQuantile) {
  for (const double df : {0.5, 1.0, 5.0, 300.0, 1e6, 1e12, 1e18}) {
    for (const double p : {1e-10, 0.025, 0.3, 0.5, 0.9, 0.999999}) {
      EXPECT_NEAR(MCDistFun::FindNCParamT(0, df, p, kStep, kTolerance), -MCDistFun::IdfStdNorm(p),
                  2 * kBound)
          << df << " " << p;
    }
  }
}

// With one degree of freedom and no noncentrality t is a Cauchy variable.
TEST(Noncentrality, IsZeroAtTheCentralProbability) {
  constexpr double kPi = 3.14159265358979323846;
  for (const double t : {-30.0, -1.0, 0.25, 4.0}) {
    const double p = 0.5 + std::atan(t) / kPi;
    EXPECT_NEAR(MCDistFun::FindNCParamT(t, 1, p, kStep, kTolerance), 0, kBound) << t;
  }
}

TEST(Noncentrality, TendsToTheNormalShift) {
  for (const double t : {-3.0, 0.5, 2.0}) {
    const double normal = t - MCDistFun::IdfStdNorm(0.2);
    // The variance of t / sqrt(chi^2 / df) adds t^2 / (2 df).
    EXPECT_NEAR(MCDistFun::FindNCParamT(t, 1e12, 0.2, kStep, kTolerance), normal, 2e-11);
    EXPECT_NEAR(MCDistFun::FindNCParamT(t, kInfinity, 0.2, kStep, kTolerance), normal, 1e-15);
  }
}

TEST(Noncentrality, RefusedArgumentsGiveTheMissingValue) {
  const double missing = MCMV::Missing();
  const double refused[][5] = {{kNan, 5, 0.5, kStep, kTolerance},
                               {kInfinity, 5, 0.5, kStep, kTolerance},
                               {missing, 5, 0.5, kStep, kTolerance},
                               {1, 0, 0.5, kStep, kTolerance},
                               {1, -1, 0.5, kStep, kTolerance},
                               {1, kNan, 0.5, kStep, kTolerance},
                               {1, 5, 0, kStep, kTolerance},
                               {1, 5, 1, kStep, kTolerance},
                               {1, 5, kNan, kStep, kTolerance},
                               {1, 5, 0.5, 0, kTolerance},
                               {1, 5, 0.5, kNan, kTolerance},
                               {1, 5, 0.5, kStep, -1},
                               {1, 5, 0.5, kStep, kNan}};
  for (const auto& [t, df, p, step, tolerance] : refused) {
    EXPECT_EQ(MCDistFun::FindNCParamT(t, df, p, step, tolerance), missing)
        << t << " " << df << " " << p << " " << step << " " << tolerance;
  }
}

}  // namespace
