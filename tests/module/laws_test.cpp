// Laws that hold for every method: swapping success and failure mirrors an interval, swapping
// groups negates it, and a higher level never narrows it.
#include <gtest/gtest.h>

#include <cmath>

#include "host/distributions.h"
#include "module/independent/intervals.h"
#include "module/independent/significance.h"
#include "module/onesample/intervals.h"
#include "module/onesample/significance.h"
#include "module/paired/intervals.h"
#include "module/paired/significance.h"

namespace proportions {
namespace {

constexpr double kLevels[] = {0.0, 50.0, 80.0, 90.0, 95.0, 99.0, 99.9999};
constexpr double kClose = 1e-9;

Level levelOf(double percent) {
  return makeLevel(1.0 - percent / 100.0, MCDistFun::IdfStdNorm(percent / 200.0 + 0.5));
}

void expectMirrored(double a, double b, double sum, const char* method) {
  if (std::isnan(a) || isMissing(a)) {
    EXPECT_EQ(std::isnan(a), std::isnan(b)) << method;
    EXPECT_EQ(isMissing(a), isMissing(b)) << method;
  } else {
    EXPECT_NEAR(a + b, sum, kClose) << method;
  }
}

/// Missing and NaN bounds have no width to compare.
void expectContains(const Bounds& wide, const Bounds& narrow, const char* method) {
  const bool lower = !std::isnan(wide.lower) && !std::isnan(narrow.lower);
  const bool upper = !std::isnan(wide.upper) && !std::isnan(narrow.upper);
  EXPECT_TRUE(!lower || wide.lower <= narrow.lower + kClose) << method;
  EXPECT_TRUE(!upper || wide.upper >= narrow.upper - kClose) << method;
}

TEST(Laws, OneSampleIntervals) {
  for (const auto& method : onesample::kIntervals) {
    for (double n : {1.0, 2.0, 7.0, 40.0, 1000.0}) {
      for (double x = 0; x <= n; x += std::max(1.0, n / 10)) {
        Bounds narrower{0.5, 0.5};
        bool first = true;
        for (double percent : kLevels) {
          const Bounds bounds = method.function({x, n - x, n}, levelOf(percent));
          const Bounds mirror = method.function({n - x, x, n}, levelOf(percent));
          expectMirrored(bounds.lower, mirror.upper, 1.0, method.keyword);
          expectMirrored(bounds.upper, mirror.lower, 1.0, method.keyword);
          if (!first) expectContains(bounds, narrower, method.keyword);
          narrower = bounds;
          first = false;
        }
      }
    }
  }
}

TEST(Laws, IndependentIntervals) {
  for (const auto& method : independent::kIntervals) {
    const independent::Counts groups[] = {{{3, 7, 10}, {5, 4, 9}},
                                          {{0, 5, 5}, {5, 0, 5}},
                                          {{1, 0, 1}, {2, 3, 5}},
                                          {{40, 60, 100}, {1, 999, 1000}}};
    for (const auto& [one, two] : groups) {
      for (double percent : kLevels) {
        const Bounds bounds = method.function({one, two}, levelOf(percent));
        const Bounds swapped = method.function({two, one}, levelOf(percent));
        expectMirrored(bounds.lower, swapped.upper, 0.0, method.keyword);
        expectMirrored(bounds.upper, swapped.lower, 0.0, method.keyword);
      }
    }
  }
}

TEST(Laws, PairedIntervals) {
  for (const auto& method : paired::kIntervals) {
    for (const paired::Counts& counts :
         {paired::Counts{3, 2, 1, 4}, {0, 9, 1, 0}, {59, 6, 16, 80}, {1, 0, 0, 1}}) {
      const paired::Counts swapped{counts.a, counts.c, counts.b, counts.d};
      for (double percent : kLevels) {
        const Bounds bounds = method.function(counts, levelOf(percent));
        const Bounds other = method.function(swapped, levelOf(percent));
        expectMirrored(bounds.lower, other.upper, 0.0, method.keyword);
        expectMirrored(bounds.upper, other.lower, 0.0, method.keyword);
      }
    }
  }
}

TEST(Laws, SwappingGroupsKeepsPValues) {
  for (const auto& method : independent::kTests) {
    const Sample one{90, 10, 100}, two{20, 80, 100};
    const TestResult test = method.function({one, two}), swapped = method.function({two, one});
    EXPECT_EQ(test.oneSided, swapped.oneSided) << method.keyword;
    EXPECT_EQ(test.statistic, -swapped.statistic) << method.keyword;
    EXPECT_GT(test.oneSided, 0.0) << method.keyword;
  }
  for (const auto& method : paired::kTests) {
    const TestResult test = method.function({5, 40, 3, 70}),
                     swapped = method.function({5, 3, 40, 70});
    EXPECT_EQ(test.oneSided, swapped.oneSided) << method.keyword;
    EXPECT_GT(test.oneSided, 0.0) << method.keyword;
  }
}

TEST(Laws, EqualDifferencesAreEqualWhateverTheCounts) {
  for (int n = 1; n <= 40; ++n) {
    for (int x = 0; x <= n; ++x) {
      const auto difference = [](double x1, double n1, double x2, double n2) {
        return independent::Counts{{x1, n1 - x1, n1}, {x2, n2 - x2, n2}}.difference();
      };
      for (const int m : {1, 3, 7, 14, 29}) {
        EXPECT_EQ(difference(x, n, 0, m), static_cast<double>(x) / n) << x << "/" << n << ", " << m;
        EXPECT_EQ(difference(x, n, m, m), static_cast<double>(x - n) / n) << x << "/" << n;
        EXPECT_EQ(difference(m * x, m * n, 0, 1), difference(x, n, 0, 1)) << x << "/" << n;
      }
    }
  }
}

}  // namespace
}  // namespace proportions
