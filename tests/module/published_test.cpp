// Worked examples from the literature, to their last printed digit.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "host/distributions.h"
#include "module/independent/intervals.h"
#include "module/independent/significance.h"
#include "module/onesample/intervals.h"
#include "module/onesample/significance.h"
#include "module/paired/intervals.h"
#include "module/paired/significance.h"
#include "reference_file.h"

namespace proportions {
namespace {

std::vector<double> countsOf(const ReferenceRow& row) {
  std::vector<double> counts;
  std::istringstream in(row.text("data"));
  for (std::string part; std::getline(in, part, '/');) counts.push_back(std::stod(part));
  return counts;
}

Level levelOf(double percent) {
  return makeLevel(1.0 - percent / 100.0, MCDistFun::IdfStdNorm(percent / 200.0 + 0.5));
}

template <typename Table, typename... Arguments>
auto apply(const Table& table, const ReferenceRow& row, const Arguments&... arguments) {
  for (const auto& method : table) {
    if (row.text("method") == method.keyword) return method.function(arguments...);
  }
  throw std::out_of_range("no method " + row.text("method"));
}

double quantityOf(const ReferenceRow& row, const Bounds& bounds) {
  return row.text("quantity") == "lower" ? bounds.lower : bounds.upper;
}

double quantityOf(const ReferenceRow& row, const TestResult& test) {
  const std::string& quantity = row.text("quantity");
  if (quantity == "z") return test.statistic;
  if (quantity == "abs_z") return std::fabs(test.statistic);
  if (quantity == "z_squared") return test.statistic * test.statistic;
  return quantity == "two_sided" ? test.twoSided : NAN;
}

double computed(const ReferenceRow& row) {
  const std::vector<double> c = countsOf(row);
  const bool isInterval = row.text("kind") == "interval";
  if (row.text("design") == "one_sample") {
    const onesample::Counts counts{c.at(0), c.at(1) - c.at(0), c.at(1)};
    return isInterval ? quantityOf(row, apply(onesample::kIntervals, row, counts,
                                              levelOf(row.number("given"))))
                      : quantityOf(row, apply(onesample::kTests, row, counts, row.number("given")));
  }
  if (row.text("design") == "paired") {
    const paired::Counts counts{c.at(0), c.at(1), c.at(2), c.at(3)};
    return isInterval ? quantityOf(row, apply(paired::kIntervals, row, counts,
                                              levelOf(row.number("given"))))
                      : quantityOf(row, apply(paired::kTests, row, counts));
  }
  const independent::Counts groups{{c.at(0), c.at(1) - c.at(0), c.at(1)},
                                   {c.at(2), c.at(3) - c.at(2), c.at(3)}};
  return isInterval ? quantityOf(row, apply(independent::kIntervals, row, groups,
                                            levelOf(row.number("given"))))
                    : quantityOf(row, apply(independent::kTests, row, groups));
}

TEST(Published, Examples) {
  const ReferenceFile file("published.csv");
  for (const ReferenceRow& row : file.rows()) {
    const double got = computed(row);
    if (row.text("agrees") == "no") {
      expectClose(got, row, "defined");
      continue;
    }
    const std::string& decimals = row.text("decimals");
    const double unit = decimals == "exact" ? 1e-12 : std::pow(10.0, -std::stoi(decimals));
    // Half a unit of the last printed digit, and what the printed decimal itself loses in a double.
    EXPECT_LE(std::fabs(got - row.number("printed")), 0.5 * unit * (1 + 1e-9))
        << "line " << row.line();
  }
}

}  // namespace
}  // namespace proportions
