#include "workbench/results/sentences.h"

#include <limits>

#include "sample_documents.h"

namespace workbench {
namespace {

/// Rows of the known tables, as the designs write them.
class Sentences : public testing::Test {
 protected:
  BpPivotTable& table(const char* title) { return pivot(procedure, title); }
  BpComposite equals(VarIndex variable, double value) {
    return composite("^1 = ^2", BpVariable(variable, 2), BpDataValue(variable, value, 2));
  }
  void addRow(const char* title, const char* types, const char* method, const BpLabel& variable,
              const std::vector<SampleBench::CellAt>& cells) {
    dimensionAt(table(title), text(types), 0, 1).Category(text(method));
    dimensionAt(table(title), text("Variables"), 0, 2).Category(variable);
    SampleBench::writeCells(dimensionAt(table(title), text("Statistics"), 1), cells);
  }
  void addBounds(const char* title, const char* group, double lower, double upper) {
    BpGroup& bounds = dimensionAt(table(title), text("Statistics"), 1)
                          .Group(composite(group, labelNumber(95)), 1, 2);
    bounds.Category(text("Lower")).Cell(statistic(lower));
    bounds.Category(text("Upper")).Cell(statistic(upper));
  }
  void addOneSampleInterval(const BpLabel& variable, double x, double n, double lower,
                            double upper) {
    addRow(kOneIntervals, "Interval Type", "Wilson Score", variable,
           {{"Observed|Successes", count(x)},
            {"Observed|Trials", count(n)},
            {"Observed|Proportion", statistic(x / n)}});
    addBounds(kOneIntervals, "^1% Confidence Interval", lower, upper);
  }
  std::vector<std::string> sentences(std::optional<int> digits = {}) {
    if (bench.document.isOpen()) bench.document.finishProcedure(&bench.data);
    return reportSentences(*bench.document.procedures()[0], digits);
  }

  static constexpr const char* kOneIntervals = "One-Sample Proportions Confidence Intervals";
  SampleBench bench;
  BpProcedure procedure{"Proportions", 10};
};

using Texts = std::vector<std::string>;

TEST_F(Sentences, AnIntervalOfAProportion) {
  addOneSampleInterval(equals(bench.data.addNumber("x"), 1), 81, 263, 0.25529, 0.36624);
  EXPECT_EQ(sentences(), (Texts{"81 of 263 (30.8%; 95% CI 25.5% to 36.6%, Wilson score)"}));
  EXPECT_EQ(sentences(3), (Texts{"81 of 263 (30.798%; 95% CI 25.529% to 36.624%, Wilson score)"}));
}

TEST_F(Sentences, DecimalsLeaveEachNumberTwoDigits) {
  addOneSampleInterval(equals(bench.data.addNumber("x"), 1), 3, 1000, 0.00102, 0.00878);
  EXPECT_EQ(sentences(), (Texts{"3 of 1000 (0.30%; 95% CI 0.10% to 0.88%, Wilson score)"}));
}

TEST_F(Sentences, SeveralVariablesAreNamed) {
  addOneSampleInterval(equals(bench.data.addNumber("x", "Smoker", {{1, "Yes"}}), 1), 1, 2, 0.1,
                       0.9);
  addOneSampleInterval(equals(bench.data.addNumber("y"), 0), 1, 4, 0.1, 0.9);
  EXPECT_EQ(sentences(), (Texts{"Smoker = Yes: 1 of 2 (50.0%; 95% CI 10.0% to 90.0%, Wilson score)",
                                "y = 0: 1 of 4 (25.0%; 95% CI 10.0% to 90.0%, Wilson score)"}));
}

TEST_F(Sentences, BoundsThatAreNoNumbers) {
  const VarIndex x = bench.data.addNumber("x");
  addOneSampleInterval(equals(x, 1), 1, 2, kSystemMissing, kSystemMissing);
  EXPECT_EQ(sentences(), (Texts{"1 of 2 (50.0%; 95% CI not available, Wilson score)"}));
}

TEST_F(Sentences, ATestOfAProportion) {
  const char* title = "One-Sample Proportions Tests";
  addRow(title, "Test Type", "Score", equals(bench.data.addNumber("x"), 1),
         {{"Observed|Successes", count(428)},
          {"Observed|Trials", count(580)},
          {"Observed|Proportion", statistic(428.0 / 580)},
          {"Observed - Test Value", statistic(-0.012)},
          {"Z", statistic(-0.6713)},
          {"Significance|Two-Sided p", statistic(0.502)}});
  dimensionAt(table(title), text("Statistics"), 1)
      .Category(text("Observed - Test Value"))
      .Note(composite("Test Value = ^1", labelNumber(0.75)));
  EXPECT_EQ(sentences(), (Texts{"428 of 580 (73.8%) compared with 75%: score test, Z = -0.67, "
                                "p = 0.502 (two-sided)"}));
}

TEST_F(Sentences, PairsNameBothProportions) {
  const VarIndex a = bench.data.addNumber("a"), b = bench.data.addNumber("b");
  BpDimension& rows =
      dimensionAt(table("Paired-Samples Proportions Statistics"), text("Variables"), 0);
  BpDimension& columns =
      dimensionAt(table("Paired-Samples Proportions Statistics"), text("Statistics"), 1);
  BpGroup& pair = rows.Group(composite("Pair ^1", count(1)), 1, 2);
  for (const auto& [variable, x] : {std::pair(a, 2.0), std::pair(b, 8.0)}) {
    pair.Category(equals(variable, 1));
    SampleBench::writeCells(
        columns,
        {{"Successes", count(x)}, {"Trials", count(21)}, {"Proportion", statistic(x / 21)}});
  }
  const BpComposite label =
      composite("Pair ^1 vars ^2 ^3 ...", count(1), BpVariable(a, 2), BpVariable(b, 2));
  addRow("Paired-Samples Proportions Tests", "Test Type", "Exact Binomial", label,
         {{"Difference in Proportions", statistic(-6.0 / 21)},
          {"Significance|Two-Sided p", statistic(0)}});
  EXPECT_EQ(sentences(), (Texts{"a = 1: 2 of 21 (9.5%), b = 1: 8 of 21 (38.1%); difference -28.6 "
                                "percentage points, exact binomial test, p < 0.001 (two-sided)"}));
}

TEST_F(Sentences, GroupsNameBothProportions) {
  const VarIndex x = bench.data.addNumber("x"), g = bench.data.addNumber("g", "Treatment");
  const char* statistics = "Independent-Samples Proportions Group Statistics";
  for (const auto& [level, successes] : {std::pair(1.0, 189.0), std::pair(2.0, 104.0)}) {
    dimensionAt(table(statistics), BpVariable(g, 2), 0, 1)
        .Category(composite("= ^1", BpDataValue(g, level, 2)));
    dimensionAt(table(statistics), text("Variables"), 0, 2).Category(equals(x, 1));
    SampleBench::writeCells(dimensionAt(table(statistics), text("Statistics"), 1),
                            {{"Successes", count(successes)},
                             {"Trials", count(11034)},
                             {"Proportion", statistic(successes / 11034)}});
  }
  const char* intervals = "Independent-Samples Proportions Confidence Intervals";
  addRow(intervals, "Interval Type", "Newcombe", equals(x, 1),
         {{"Difference in Proportions", statistic(85.0 / 11034)}});
  addBounds(intervals, "^1% Confidence Interval of the Difference", 0.0047, 0.0108);
  EXPECT_EQ(sentences(), (Texts{"x = 1: 189 of 11034 (1.71%) with Treatment = 1, 104 of 11034 "
                                "(0.94%) with Treatment = 2; difference 0.77 percentage points "
                                "(95% CI 0.47 to 1.08, Newcombe)"}));
}

TEST_F(Sentences, SplitGroupsAreNamed) {
  const VarIndex x = bench.data.addNumber("x");
  bench.data.splitVariablesNow = {bench.data.addString("region")};
  for (const char* region : {"north", "south"}) {
    bench.data.splitNow = {std::string(region)};
    procedure.SplitChange();
    addOneSampleInterval(equals(x, 1), 1, 2, 0.1, 0.9);
  }
  const Texts got = sentences();
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0].substr(0, 27), "region = north: 1 of 2 (50.");
  EXPECT_EQ(got[1].substr(0, 27), "region = south: 1 of 2 (50.");
}

TEST_F(Sentences, WhatHasNoResultSaysSo) {
  const VarIndex a = bench.data.addNumber("a"), b = bench.data.addNumber("b");
  addOneSampleInterval(equals(a, 1), 1, 2, 0.1, 0.9);
  dimensionAt(table(kOneIntervals), text("Variables"), 0, 2).Category(equals(b, 1));
  EXPECT_EQ(sentences().back(), "b = 1: no result");
}

}  // namespace
}  // namespace workbench
