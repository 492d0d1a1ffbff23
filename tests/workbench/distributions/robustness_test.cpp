#include <gtest/gtest.h>

#include <cmath>

#include "host/distributions.h"
#include "nasty_numbers.h"

namespace {

bool isProbability(double value) { return value >= 0 && value <= 1; }

using BinomialFunction = double (*)(double, double, double, int32_t&);

TEST(Robustness, BinomialFunctionsAnswerEverything) {
  const BinomialFunction functions[] = {MCDistFun::CdfBin, MCDistFun::CdfBinUpper,
                                        MCDistFun::PdfBin};
  for (const double k : kNasty) {
    for (const double n : kNasty) {
      for (const double p : kNasty) {
        for (const auto function : functions) {
          int32_t error = 0;
          const double value = function(k, n, p, error);
          const bool answered = error == 0 ? isProbability(value) : value == MCMV::Missing();
          EXPECT_TRUE(answered) << k << " " << n << " " << p << " gave " << value;
        }
      }
    }
  }
}

TEST(Robustness, BetaQuantileAnswersEverything) {
  for (const double q : kNasty) {
    for (const double a : kNasty) {
      for (const double b : kNasty) {
        const bool answerable =
            q >= 0 && q <= 1 && a > 0 && b > 0 && std::isfinite(a) && std::isfinite(b);
        for (const double value : {MCDistFun::IdfBeta(q, a, b), MCDistFun::IdfBetaUpper(q, a, b)}) {
          EXPECT_EQ(value != MCMV::Missing(), answerable) << q << " " << a << " " << b;
          EXPECT_EQ(isProbability(value), answerable) << q << " " << a << " " << b;
        }
      }
    }
  }
}

TEST(Robustness, NormalFunctionsAnswerEverything) {
  for (const double x : kNasty) {
    const double tail = MCDistFun::CdfStdNorm(x);
    EXPECT_TRUE(isProbability(tail) || tail == MCMV::Missing()) << x;
    EXPECT_FALSE(std::isnan(MCDistFun::IdfStdNorm(x))) << x;
  }
}

TEST(Robustness, NoncentralityAnswersEverything) {
  for (const double t : kNasty) {
    for (const double df : kNasty) {
      for (const double p : {1e-300, 1e-17, 0.001, 0.5, 0.75, 0.9999999999999999}) {
        const double d = MCDistFun::FindNCParamT(t, df, p, 1e-6, 1e-12);
        EXPECT_TRUE(std::isfinite(d)) << t << " " << df << " " << p;
      }
    }
  }
  for (const double step : kNasty) {
    for (const double tolerance : kNasty) {
      const double d = MCDistFun::FindNCParamT(1, 5, 0.5, step, tolerance);
      EXPECT_TRUE(std::isfinite(d)) << step << " " << tolerance;
    }
  }
}

}  // namespace
