// The binomial sums of the paired exact tests: what is left out does not show.
#include <gtest/gtest.h>

#include <cmath>

#include "host/distributions.h"
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
      const PairedCounts counts{0, last, last + more, 0};
      EXPECT_EQ(exactPaired(counts).oneSided, fullSum(last, 2 * last + more, 1.0))
          << last << ' ' << more;
      EXPECT_EQ(midPPaired(counts).oneSided, fullSum(last, 2 * last + more, 0.5))
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
  EXPECT_NEAR(exactPaired({0, m, m, 0}).oneSided,
              0.5 + 0.5 * MCDistFun::PdfBin(m, 2 * m, 0.5, error), 1e-12);
  EXPECT_NEAR(midPPaired({0, m, m, 0}).oneSided, 0.5, 1e-12);
}

}  // namespace
}  // namespace proportions
