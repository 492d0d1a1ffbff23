// The binomial sums of the paired exact tests: what is left out does not show.
#include <gtest/gtest.h>

#include <cmath>

#include "host/distributions.h"
#include "module/math/binomial.h"
#include "module/math/half_sum.h"
#include "module/paired/intervals.h"
#include "module/paired/significance.h"

namespace proportions {
namespace {

double fullSum(double last, double n, double lastWeight) {
  int32_t error = 0;
  long double sum = 0.0L;
  for (double k = 0; k <= last; ++k) {
    sum += static_cast<long double>((k == last ? lastWeight : 1.0) *
                                    MCDistFun::PdfBin(k, n, 0.5, error));
  }
  EXPECT_EQ(error, 0);
  return static_cast<double>(sum);
}

TEST(BinomialSums, TermsLeftOutChangeNothing) {
  for (double last : {2047.0, 2048.0, 3000.0, 9999.0, 40000.0}) {
    for (double more : {0.0, 1.0, 100.0, 1000.0, 30000.0}) {
      const paired::Counts counts{0, last, last + more, 0};
      EXPECT_EQ(paired::exact(counts).oneSided, fullSum(last, 2 * last + more, 1.0))
          << last << ' ' << more;
      EXPECT_EQ(paired::midP(counts).oneSided, fullSum(last, 2 * last + more, 0.5))
          << last << ' ' << more;
    }
  }
}

TEST(BinomialSums, SomeTermsAreLeftOut) {
  EXPECT_EQ(firstTermThatCounts(2047, 4094), 0.0);
  EXPECT_GT(firstTermThatCounts(40000, 80000), 30000.0);
  EXPECT_GT(firstTermThatCounts(5e9, 1e10), 4.99e9);
}

TEST(BinomialSums, HalfOfAllAtTheCentre) {
  // P(X <= m) for n = 2m is 1/2 + P(X = m)/2.
  int32_t error = 0;
  const double m = 5e7;
  EXPECT_NEAR(paired::exact({0, m, m, 0}).oneSided,
              0.5 + 0.5 * MCDistFun::PdfBin(m, 2 * m, 0.5, error), 1e-12);
  EXPECT_NEAR(paired::midP({0, m, m, 0}).oneSided, 0.5, 1e-12);
}

TEST(BinomialSums, SumsOfMillionsAgreeWithTheirTerms) {
  const double n = 1e11;
  for (const double last : {n / 2, n / 2 - 1e5}) {
    const double first = firstTermThatCounts(last, n);
    ASSERT_GT(last - first, kMostTerms);
    long double sum = 0;
    int32_t error = 0;
    for (double k = first; k < last; ++k) sum += MCDistFun::PdfBin(k, n, 0.5, error);
    const double term = MCDistFun::PdfBin(last, n, 0.5, error);
    const paired::Counts counts{0, last, n - last, 0};
    const double exact = static_cast<double>(sum + term);
    const double midP = static_cast<double>(sum + term / 2);
    EXPECT_NEAR(paired::exact(counts).oneSided, exact, 1e-12 * exact) << last;
    EXPECT_NEAR(paired::midP(counts).oneSided, midP, 1e-12 * midP) << last;
  }
}

/// With counts that have no neighbours among the doubles there is an answer, and it comes at once.
TEST(BinomialSums, CountsWithoutBounds) {
  for (const double m : {1e12, 1e15, 9007199254740992.0, 1e18, 1e100, 1e300}) {
    EXPECT_NEAR(paired::exact({0, m, m, 0}).oneSided, 0.5, 1e-6) << m;
    EXPECT_NEAR(paired::midP({0, m, m, 0}).oneSided, 0.5, 1e-9) << m;
    EXPECT_EQ(paired::exact({0, m, m * 4, 0}).oneSided, 0.0) << m;
  }
  EXPECT_TRUE(isMissing(paired::exact({0, 1e308, 1e308, 0}).oneSided)) << "the total is no number";
}

}  // namespace
}  // namespace proportions
