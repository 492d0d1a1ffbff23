// Distribution functions: the edges that procedures rely on.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "host/constants.h"
#include "host/distributions.h"
#include "tests/conformance/host_under_test.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class Distributions : public testing::Test {
 protected:
  std::unique_ptr<conformance::OpenHost> host_ =
      conformance::open({{conformance::numbers("x", {1})}});
  int32_t error_ = 0;
};

TEST_F(Distributions, MissingIsTheLowestDouble) {
  const double missing = MCMV::Missing();
  const double expected = -1.7976931348623157e+308;
  EXPECT_EQ(std::memcmp(&missing, &expected, sizeof missing), 0);
  EXPECT_EQ(missing, kSystemMissing);
}

TEST_F(Distributions, BinomialTailsAtTheirEnds) {
  EXPECT_EQ(MCDistFun::CdfBin(-1, 10, 0.5, error_), 0);
  EXPECT_EQ(MCDistFun::CdfBin(10, 10, 0.5, error_), 1);
  EXPECT_EQ(MCDistFun::CdfBin(11, 10, 0.5, error_), 1);
  EXPECT_EQ(MCDistFun::CdfBinUpper(-1, 10, 0.5, error_), 1);
  EXPECT_EQ(MCDistFun::CdfBinUpper(10, 10, 0.5, error_), 0);
  EXPECT_EQ(MCDistFun::PdfBin(0, 0, 0.5, error_), 1);
  EXPECT_EQ(MCDistFun::PdfBin(-1, 10, 0.5, error_), 0);
  EXPECT_EQ(MCDistFun::PdfBin(11, 10, 0.5, error_), 0);
  EXPECT_EQ(error_, 0);
}

TEST_F(Distributions, BinomialValues) {
  EXPECT_NEAR(MCDistFun::CdfBin(6, 10, 0.5, error_), 848.0 / 1024, 1e-15);
  EXPECT_NEAR(MCDistFun::CdfBinUpper(6, 10, 0.5, error_), 176.0 / 1024, 1e-15);
  EXPECT_NEAR(MCDistFun::PdfBin(7, 10, 0.5, error_), 120.0 / 1024, 1e-15);
  // No cancellation in the upper tail: P(X > 99) = 1e-300 for p = 1e-3, n = 100.
  EXPECT_NEAR(MCDistFun::CdfBinUpper(99, 100, 1e-3, error_) / 1e-300, 1, 1e-12);
  EXPECT_EQ(error_, 0);
}

TEST_F(Distributions, BadArgumentsAreMissingAndSetTheError) {
  using Function = double (*)(double, double, double, int32_t&);
  for (const Function function :
       {&MCDistFun::CdfBin, &MCDistFun::CdfBinUpper, &MCDistFun::PdfBin}) {
    const double bad[][3] = {{1, -1, 0.5},    {1, 10, -0.1},  {1, 10, 1.1},
                             {kNaN, 10, 0.5}, {1, kNaN, 0.5}, {1, 10, kNaN}};
    for (const auto& [k, n, p] : bad) {
      error_ = 0;
      EXPECT_EQ(function(k, n, p, error_), kSystemMissing) << k << ' ' << n << ' ' << p;
      EXPECT_NE(error_, 0) << k << ' ' << n << ' ' << p;
    }
  }
}

TEST_F(Distributions, SuccessLeavesTheErrorAlone) {
  error_ = 7;
  MCDistFun::CdfBin(3, 10, 0.5, error_);
  MCDistFun::CdfBinUpper(3, 10, 0.5, error_);
  MCDistFun::PdfBin(3, 10, 0.5, error_);
  EXPECT_EQ(error_, 7);
}

TEST_F(Distributions, StandardNormal) {
  EXPECT_EQ(MCDistFun::CdfStdNorm(0), 0.5);
  EXPECT_EQ(MCDistFun::CdfStdNorm(kInfinity), 1);
  EXPECT_EQ(MCDistFun::CdfStdNorm(-kInfinity), 0);
  EXPECT_EQ(MCDistFun::CdfStdNorm(kNaN), kSystemMissing);
  EXPECT_EQ(MCDistFun::CdfStdNorm(kSystemMissing), kSystemMissing);
  // Abramowitz & Stegun (1964), table 26.2: Q(9) = 1.12859e-19.
  EXPECT_NEAR(MCDistFun::CdfStdNorm(-9) / 1.12858840595384e-19, 1, 1e-13);
}

TEST_F(Distributions, StandardNormalQuantile) {
  EXPECT_EQ(MCDistFun::IdfStdNorm(0.5), 0);
  EXPECT_NEAR(MCDistFun::IdfStdNorm(0.975), 1.959963984540054, 4e-16);
  EXPECT_EQ(MCDistFun::IdfStdNorm(0), -kInfinity);
  EXPECT_EQ(MCDistFun::IdfStdNorm(1), kInfinity);
  for (const double p : {-0.1, 1.1, kNaN}) EXPECT_EQ(MCDistFun::IdfStdNorm(p), kSystemMissing);
}

TEST_F(Distributions, BetaQuantile) {
  // With one shape 1 the distribution function is a power.
  EXPECT_NEAR(MCDistFun::IdfBeta(0.025, 10.0, 1.0), std::pow(0.025, 0.1), 1e-14);
  EXPECT_NEAR(MCDistFun::IdfBeta(0.975, 1.0, 10.0), 1 - std::pow(0.025, 0.1), 1e-14);
  EXPECT_NEAR(MCDistFun::IdfBetaUpper(0.025, 1.0, 10.0), 1 - std::pow(0.025, 0.1), 1e-14);
  EXPECT_NEAR(MCDistFun::IdfBetaUpper(0.975, 10.0, 1.0), std::pow(0.025, 0.1), 1e-14);
  for (const auto function : {&MCDistFun::IdfBeta, &MCDistFun::IdfBetaUpper}) {
    EXPECT_EQ(function(kNaN, 1.0, 1.0), kSystemMissing);
    EXPECT_EQ(function(0.5, 0.0, 1.0), kSystemMissing);
    EXPECT_EQ(function(0.5, 1.0, -1.0), kSystemMissing);
    EXPECT_EQ(function(1.5, 1.0, 1.0), kSystemMissing);
  }
}

TEST_F(Distributions, UpperBetaQuantileOfATailThatOneLacks) {
  // 1 - 1e-20 is 1 in a double; the variable of shapes 1 and 2 exceeds 1 - sqrt(q) with
  // probability q.
  EXPECT_NEAR((1 - MCDistFun::IdfBetaUpper(1e-20, 1.0, 2.0)) / 1e-10, 1, 1e-6);
  EXPECT_LT(MCDistFun::IdfBetaUpper(1e-20, 1.0, 2.0), 1);
  // A small place keeps its digits, which 1 less the mirrored quantile would not.
  EXPECT_NEAR(MCDistFun::IdfBetaUpper(0.025, 1.0, 1e15) * 1e15, 3.688879454113936, 1e-11);
}

TEST_F(Distributions, NoncentralityUndoesTheDistributionAtZero) {
  // P(T <= 0) = P(Z <= -d), so the answer at t = 0 is the normal quantile, turned round.
  EXPECT_NEAR(MCDistFun::FindNCParamT(0, 5, 0.025, 1e-6, 1e-12), 1.959963984540054, 1e-9);
  EXPECT_EQ(MCDistFun::FindNCParamT(1, 5, kNaN, 1e-6, 1e-12), kSystemMissing);
}

}  // namespace
