// Every interval, test and estimate of the three designs against references in 60-digit arithmetic.
#include <gtest/gtest.h>

#include <cmath>

#include "host/distributions.h"
#include "module/independent/estimates.h"
#include "module/independent/intervals.h"
#include "module/independent/significance.h"
#include "module/onesample/estimates.h"
#include "module/onesample/intervals.h"
#include "module/onesample/significance.h"
#include "module/paired/estimates.h"
#include "module/paired/intervals.h"
#include "module/paired/significance.h"
#include "reference_file.h"

namespace proportions {
namespace {

/// As the analysis object makes it.
Level levelOf(const ReferenceRow& row) {
  const double percent = row.number("level");
  return makeLevel(1.0 - percent / 100.0, MCDistFun::IdfStdNorm(percent / 200.0 + 0.5));
}

template <typename Table>
auto functionOf(const Table& table, const std::string& keyword) {
  for (const auto& method : table) {
    if (keyword == method.keyword) return method.function;
  }
  throw std::out_of_range("no method " + keyword);
}

onesample::Counts sampleOf(const ReferenceRow& row) {
  const double x = row.number("x"), n = row.number("n");
  return {x, n - x, n};
}

paired::Counts tableOf(const ReferenceRow& row) {
  return {row.number("n11"), row.number("n10"), row.number("n01"), row.number("n00")};
}

independent::Counts groupsOf(const ReferenceRow& row) {
  const double x1 = row.number("x1"), n1 = row.number("n1");
  const double x2 = row.number("x2"), n2 = row.number("n2");
  return {{x1, n1 - x1, n1}, {x2, n2 - x2, n2}};
}

void expectBounds(const Bounds& got, const ReferenceRow& row) {
  expectClose(got.lower, row, "lower");
  expectClose(got.upper, row, "upper");
}

void expectTest(const TestResult& got, const ReferenceRow& row) {
  if (row.text("z") == "none") {
    EXPECT_EQ(got.statistic, kSystemMissing) << "line " << row.line();
  } else {
    expectClose(got.statistic, row, "z");
  }
  expectClose(got.oneSided, row, "one_sided");
  expectClose(got.twoSided, row, "two_sided");
}

TEST(Methods, OneSampleIntervals) {
  const ReferenceFile file("onesample_intervals.csv");
  for (const ReferenceRow& row : file.rows()) {
    const auto method = functionOf(onesample::kIntervals, row.text("method"));
    expectBounds(method(sampleOf(row), levelOf(row)), row);
  }
}

TEST(Methods, OneSampleTests) {
  const ReferenceFile file("onesample_tests.csv");
  for (const ReferenceRow& row : file.rows()) {
    const auto method = functionOf(onesample::kTests, row.text("test"));
    expectTest(method(sampleOf(row), row.number("p0")), row);
  }
}

TEST(Methods, PairedIntervals) {
  const ReferenceFile file("paired_intervals.csv");
  for (const ReferenceRow& row : file.rows()) {
    const auto method = functionOf(paired::kIntervals, row.text("method"));
    expectBounds(method(tableOf(row), levelOf(row)), row);
  }
}

TEST(Methods, PairedTests) {
  const ReferenceFile file("paired_tests.csv");
  for (const ReferenceRow& row : file.rows()) {
    const auto method = functionOf(paired::kTests, row.text("test"));
    expectTest(method(tableOf(row)), row);
  }
}

TEST(Methods, IndependentIntervals) {
  const ReferenceFile file("independent_intervals.csv");
  for (const ReferenceRow& row : file.rows()) {
    const auto method = functionOf(independent::kIntervals, row.text("method"));
    expectBounds(method(groupsOf(row), levelOf(row)), row);
  }
}

TEST(Methods, IndependentTests) {
  const ReferenceFile file("independent_tests.csv");
  for (const ReferenceRow& row : file.rows()) {
    const auto method = functionOf(independent::kTests, row.text("test"));
    expectTest(method(groupsOf(row)), row);
  }
}

/// Weights have no bound, so the products of their sums may exceed the largest double.
TEST(Methods, IntervalsOfEnormousCounts) {
  const ReferenceFile file("enormous_intervals.csv");
  for (const ReferenceRow& row : file.rows()) {
    const double a = row.number("a"), b = row.number("b");
    const std::string& design = row.text("design");
    const std::string& method = row.text("method");
    Bounds bounds;
    if (design == "onesample") {
      bounds = functionOf(onesample::kIntervals, method)({a, b, a + b}, levelOf(row));
    } else if (design == "paired") {
      const paired::Counts table{a, b, row.number("c"), row.number("d")};
      bounds = functionOf(paired::kIntervals, method)(table, levelOf(row));
    } else {
      const double c = row.number("c"), d = row.number("d");
      bounds =
          functionOf(independent::kIntervals, method)({{a, b, a + b}, {c, d, c + d}}, levelOf(row));
    }
    SCOPED_TRACE(design + " " + method);
    expectClose(bounds.lower, row, "lower", 1e-150);
    expectClose(bounds.upper, row, "upper", 1e-150);
  }
}

TEST(Methods, PairedEstimates) {
  const ReferenceFile file("paired_statistics.csv");
  for (const ReferenceRow& row : file.rows()) {
    PropZPairSamp record;
    const auto [a, b, c, d] = tableOf(row);
    record._n11 = a, record._n10 = b, record._n01 = c, record._n00 = d;
    record._n1p = a + b, record._np1 = a + c, record._n0p = c + d, record._np0 = b + d;
    record.numObservations = a + b + c + d;
    paired::estimate(record);
    expectClose(record.firstProportion, row, "p1");
    expectClose(record.secondProportion, row, "p2");
    expectClose(record.estimatedDifference, row, "diff");
    expectClose(record.firstAse, row, "ase1");
    expectClose(record.secondAse, row, "ase2");
    expectClose(record._aseDiff0, row, "asediff0");
    expectClose(record._aseDiff1, row, "asediff1");
  }
}

TEST(Methods, IndependentEstimates) {
  const ReferenceFile file("independent_statistics.csv");
  for (const ReferenceRow& row : file.rows()) {
    PropZIndSamp record;
    const auto [one, two] = groupsOf(row);
    record.numSuccesses1 = one.x, record.numFailures1 = one.f, record.numTrials1 = one.n;
    record.numSuccesses2 = two.x, record.numFailures2 = two.f, record.numTrials2 = two.n;
    record.numObservations = one.n + two.n;
    independent::estimate(record);
    expectClose(record.populationProportion1, row, "p1");
    expectClose(record.populationProportion2, row, "p2");
    expectClose(record.estimatedDifference, row, "diff");
    expectClose(record.ase1, row, "ase1");
    expectClose(record.ase2, row, "ase2");
    expectClose(record._aseDiff0, row, "asediff0");
    expectClose(record._aseDiff1, row, "asediff1");
  }
}

TEST(Methods, OneSampleEstimates) {
  PropZOneSamp record;
  record.numSuccesses = 4, record.numFailures = 12, record.numTrials = 16;
  onesample::estimate(record, 0.5);
  EXPECT_EQ(record.populationProportion, 0.25);
  EXPECT_EQ(record.estimatedDifference, -0.25);
  EXPECT_EQ(record._aseDiff0, 0.125);
  EXPECT_DOUBLE_EQ(record._aseDiff1, std::sqrt(0.25 * 0.75 / 16));
}

/// Differences reach from -1 to 1 but for the hybrid intervals, whose distances are those to the
/// ends of both proportions' ranges.
void expectLimits(const char* keyword, const Bounds& bounds, const Bounds& hybrid) {
  const bool isHybrid = std::string(keyword).rfind("NEWCOMBE", 0) == 0;
  EXPECT_NEAR(bounds.lower, isHybrid ? hybrid.lower : -1.0, isHybrid ? 1e-15 : 0.0) << keyword;
  EXPECT_NEAR(bounds.upper, isHybrid ? hybrid.upper : 1.0, isHybrid ? 1e-15 : 0.0) << keyword;
}

TEST(Methods, InfiniteCriticalValueGivesTheLimits) {
  const Level level = makeLevel(0.0, INFINITY);
  for (const auto& method : onesample::kIntervals) {
    for (const double x : {0.0, 3.0, 10.0}) {
      const Bounds bounds = method.function({x, 10 - x, 10}, level);
      const std::string keyword = method.keyword;
      if ((keyword == "WALD" || keyword == "LOGIT") && x != 3.0) continue;  // a point; none
      // With one outcome only Wald's width is 0 and the correction is all there is.
      EXPECT_EQ(bounds.lower, keyword == "WALDCC" && x == 10.0 ? 0.95 : 0.0) << keyword << x;
      EXPECT_EQ(bounds.upper, keyword == "WALDCC" && x == 0.0 ? 0.05 : 1.0) << keyword << x;
    }
  }
  const double p1 = 3.0 / 10, p2 = 5.0 / 9;
  for (const auto& method : independent::kIntervals) {
    expectLimits(method.keyword, method.function({{3, 7, 10}, {5, 4, 9}}, level),
                 {p1 - p2 - std::hypot(p1, 1 - p2), p1 - p2 + std::hypot(1 - p1, p2)});
  }
  // 3 + 2, 1 + 4: p1 = 0.5, p2 = 0.4, phi = (10 - 5) / sqrt(5 · 5 · 4 · 6).
  const double phi = 5 / std::sqrt(600.0);
  for (const auto& method : paired::kIntervals) {
    expectLimits(method.keyword, method.function({3, 2, 1, 4}, level),
                 {0.1 - std::sqrt(0.36 + 0.25 - 2 * phi * 0.5 * 0.6),
                  0.1 + std::sqrt(0.16 + 0.25 - 2 * phi * 0.5 * 0.4)});
  }
}

}  // namespace
}  // namespace proportions
