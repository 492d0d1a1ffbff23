// What whole runs of the three designs dump, with the values worked out by hand.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/diagnostics/dumped_run.h"
#include "tests/diagnostics/record_templates.h"

namespace diagnostics {
namespace {

/// The lines from the k-th start of a dump to its end.
std::vector<std::string> dumpOf(const DumpedRun& run, const std::string& record, int k = 1) {
  auto begin = run.display.begin() - 1;
  for (; k > 0; --k) begin = std::find(begin + 1, run.display.end(), record + " display start");
  const auto end = std::find(begin, run.display.end(), record + " display end");
  if (end == run.display.end()) return {};
  return {begin, end + 1};
}

Lines cutpoint() {
  return with(freshElement(), R"(
    S Binomial Option = "Cut Point"
    B Categorical Variable = false
  )");
}

/// Of a numeric variable with these extremes.
Lines numbersBetween(const std::string& least, const std::string& middle,
                     const std::string& largest) {
  return with(freshCategories(),
              "B Has valid value flag = true\n D Minimum numeric value = " + least +
                  "\n D Maximum numeric value = " + largest + "\n D Middle point = " + middle);
}

TEST(Runs, OneSampleSpecification) {
  Lines lines = with(freshSpecification(cutpoint()), R"(
    IV Vector of Test Variable indices = [0]
    D Test Value = 0.25
    D Confidence Interval Level as percent = 75
    BV Test Type Option flags = [1, 0, 0, 0, 0, 1]
    BV CI Type Option flags = [0, 0, 0, 0, 1, 0, 0, 0, 0]
  )");
  lines = inserted(lines, "Test Variable Vector Info Elements display start", with(cutpoint(), R"(
    DV Numeric Values = [0.5]
    SV String Values = ["0.5"]
  )"));
  EXPECT_EQ(dumpOf(runWithDumps(oneSampleScript()), "PRPValidSpecs"), lines);
}

// 12 successes of 16: p = 0.75, p - p0 = 0.5, sqrt(0.1875 / 16) = 0.10825... twice.
TEST(Runs, OneSampleAnalysis) {
  const Lines record = with(freshOneSampleRecord(), R"(
    I Local variable index = 0
    D Number of successes = 12
    D Number of failures = 4
    D Number of trials = 16
    D Population proportion = 0.75
    D Estimated difference = 0.5
    D _aseDiff0 = 0.10825317547305482
    D _aseDiff1 = 0.10825317547305482
  )");
  Lines lines = with(freshAnalysis(), R"(
    B Initial data pass indicator = false
    I Number of all cases = 3
    I Number of valid cases = 2
    I Number of invalid cases = 1
    D Weighted number of all cases = 16
    D Weighted number of valid cases = 16
    D Alpha level = 0.25
    D IDF Normal value of adjusted confidence level = 1.5
  )");
  lines = replaced(lines, "Weight variable is not defined", {"I Weight variable index = 1"});
  EXPECT_EQ(dumpOf(runWithDumps(oneSampleScript()), "PRPAlgorithm"),
            withRecords(lines, joined(numbersBetween("0", "0.5", "1"), record)));
}

TEST(Runs, PairedSpecification) {
  Lines lines = with(freshSpecification(), R"(
    S Model Type = "Related"
    IV Vector of Test Variable indices = [0]
    IV Second Vector of Test Variable indices = [1]
    B Flag for Ordered Pair option = true
    B Scope Analysis = false
    B User Missing Included = true
    D Confidence Interval Level as percent = 50
    BV Test Type Option flags = [0, 0, 0, 0, 0, 0]
    BV CI Type Option flags = [0, 0, 0, 0, 0]
  )");
  lines = inserted(lines, "Test Variable Vector Info Elements display start", freshElement());
  lines = inserted(lines, "Second Variable Vector Info Elements display start", freshElement());
  EXPECT_EQ(dumpOf(runWithDumps(pairedScript()), "PRPValidSpecs"), lines);
}

// 6, 3, 1 and 6 of 16 cases: p1 = 9/16, p2 = 7/16; the first error is sqrt(9·7 / 256 / 9), the
// second sqrt(9·7 / 256 / 7) = 3/16, and the variances of the difference are 4/256 and
// (1/4 - 1/64) / 16.
TEST(Runs, PairedAnalysis) {
  Lines strings = with(freshCategories(), R"(
    B Has valid value flag = true
    S Minimum string value = "no"
    S Maximum string value = "yes"
  )");
  strings = replaced(strings, "DV Numeric Categorical Values = []",
                     {"SV String Categorical Values = []"});
  const Lines record = with(freshPairedRecord(), R"(
    I Variable pair index = 0
    I First local variable index = 0
    I Second local variable index = 0
    D _n11 = 6
    D _n10 = 3
    D _n01 = 1
    D _n00 = 6
    D _n1p = 9
    D _np1 = 7
    D _n0p = 7
    D _np0 = 9
    D Number of observations = 16
    D _p11 = 0.375
    D _p10 = 0.1875
    D _p01 = 0.0625
    D _p00 = 0.375
    D Proportion for the first measurement = 0.5625
    D Proportion for the second measurement = 0.4375
    D Estimated difference = 0.125
    D Asymtotic standard error for the first proportion = 0.16535945694153692
    D Asymtotic standard error for the second proportion = 0.1875
    D _aseDiff0 = 0.125
    D _aseDiff1 = 0.12103072956898178
  )");
  const Lines lines = with(freshAnalysis(), R"(
    B Initial data pass indicator = false
    I Number of all cases = 18
    I Number of valid cases = 16
    I Number of invalid cases = 2
    D Weighted number of all cases = 18
    D Weighted number of valid cases = 16
    D Weighted number of invalid cases = 2
    D Alpha level = 0.5
    D IDF Normal value of adjusted confidence level = 1.5
  )");
  const Lines categories = joined(strings, numbersBetween("0", "0.5", "1"));
  EXPECT_EQ(dumpOf(runWithDumps(pairedScript()), "PRPAlgorithm"),
            withRecords(lines, joined(categories, record)));
}

TEST(Runs, LevelsOfAStringHaveNoNumbers) {
  recording::Script script;
  script.addString("s", 9);
  script.addCase({"yes"});
  script.command = "PROPORTIONS /ONESAMPLE s /SUCCESS VALUE=LEVEL('yes' 1).";
  EXPECT_EQ(dumpOf(runWithDumps(script), "BinInfoElem"), with(freshElement(), R"(
    S Binomial Option = "Category Levels"
    DV Numeric Values = [missing, 1]
    SV String Values = ["yes", "1"]
    I OBS length = 2
  )"));
}

TEST(Runs, IndependentSpecification) {
  Lines lines = with(freshSpecification(), R"(
    S Model Type = "Independent"
    IV Vector of Test Variable indices = [0]
    I Group Variable Index = 1
    D Confidence Interval Level as percent = 50
    BV Test Type Option flags = [0, 0, 0, 1, 0]
    BV CI Type Option flags = [1, 1, 1, 1, 1, 1, 1]
  )");
  lines = inserted(lines, "Test Variable Vector Info Elements display start", freshElement());
  const Lines group = with(freshElement(), R"(
    S Binomial Option = "Middle Point"
    B Categorical Variable = false
  )");
  EXPECT_EQ(dumpOf(runWithDumps(independentScript()), "PRPValidSpecs"),
            withGroupElement(lines, group));
}

// 6 of 8 against 2 of 8: each error is sqrt(0.1875 / 8), that of the difference sqrt(2) times as
// large, and under equal proportions, pooled 1/2, sqrt(2 · 0.25 / 8).
TEST(Runs, IndependentAnalysisOfTheBaseData) {
  const Lines record = with(freshIndependentRecord(), R"(
    I Local variable index = 0
    D Number of successes for group 1 = 6
    D Number of failures for group 1 = 2
    D Number of trials for group 1 = 8
    D Number of successes for group 2 = 2
    D Number of failures for group 2 = 6
    D Number of trials for group 2 = 8
    D Number of observations = 16
    D Population proportion for group 1 = 0.75
    D Population proportion for group 2 = 0.25
    D Estimated difference = 0.5
    D Asymtotic standard error for the first proportion = 0.15309310892394862
    D Asymtotic standard error for the second proportion = 0.15309310892394862
    D _aseDiff0 = 0.25
    D _aseDiff1 = 0.21650635094610965
  )");
  Lines lines = with(freshAnalysis(), R"(
    B Initial data pass indicator = false
    B Split file indicator = true
    B Splits as Rows indicator = true
    I Number of all cases = 16
    I Number of valid cases = 16
    D Weighted number of all cases = 16
    D Weighted number of valid cases = 16
    D Alpha level = 0.5
    D IDF Normal value of adjusted confidence level = 1.5
    B Need aggregation flag = true
    B Need success aggregation flag = true
    B Need select aggregation flag = true
    B Bootstrapping flag = true
    I Pooling Variable Index = 2
  )");
  lines = replaced(lines, "User Split Indices are not defined", {"IV User Split Indices = [3]"});
  const Lines categories = joined(numbersBetween("0", "0.5", "1"), numbersBetween("1", "3", "5"));
  EXPECT_EQ(dumpOf(runWithDumps(independentScript()), "PRPAlgorithm"),
            withRecords(lines, joined(categories, record)));
}

TEST(Runs, LevelsOfANumberAreNotCategories) {
  recording::Script script;
  script.addNumeric("x");
  script.addCase({1.0});
  script.command = "PROPORTIONS /ONESAMPLE x /SUCCESS VALUE=LEVEL(1).";
  const DumpedRun run = runWithDumps(script);
  const Lines rule = with(freshElement(), R"(
    S Binomial Option = "Category Levels"
    B Categorical Variable = false
  )");
  EXPECT_EQ(dumpOf(run, "BinInfoElem", 1), with(rule, R"(
    DV Numeric Values = [1]
    SV String Values = ["1"]
  )"));
  EXPECT_EQ(dumpOf(run, "BinInfoElem", 2), rule);
}

TEST(Runs, ASampleNumberThatNoIntegerHoldsIsTheLargest) {
  recording::Script script;
  script.addNumeric("x");
  script.split = {script.addNumeric("$bootstrap_split")};
  for (const double sample : {0.0, 1e10}) {
    script.addCase({1.0, sample});
    script.addEndMark();
  }
  script.command = "PROPORTIONS /ONESAMPLE x.";
  const Lines dump = dumpOf(runWithDumps(script), "PRPAlgorithm", 2);
  EXPECT_EQ(dump, with(dump, "I Pooling Sample Index = 2147483647"));
}

TEST(Runs, CasesOfTheSecondGroupAloneAreJudged) {
  recording::Script script;
  script.addNumeric("x");
  script.addNumeric("g");
  script.addCase({1.0, 2.0}, 3);
  script.command = "PROPORTIONS /INDEPENDENTSAMPLES x BY g.";
  const Lines dump = dumpOf(runWithDumps(script), "PropZIndSamp");
  EXPECT_EQ(dump, with(dump, R"(
    D Number of trials for group 2 = 3
    B Good Data indicator = false
  )"));
}

TEST(Runs, WithoutCasesOfEitherGroupNoRecordIsJudged) {
  recording::Script script;
  script.addNumeric("g");
  script.addNumeric("x");
  script.addCase({3.0, 1.0}, 2);
  script.command = "PROPORTIONS /INDEPENDENTSAMPLES x BY g.";
  const Lines dump = dumpOf(runWithDumps(script), "PropZIndSamp");
  EXPECT_EQ(dump, with(freshIndependentRecord(), "I Local variable index = 0"));
}

class WithoutGoodRecords : public testing::TestWithParam<std::string> {};

TEST_P(WithoutGoodRecords, TheAnalysisHasNoGoodData) {
  recording::Script script;
  script.addNumeric("x");
  script.addNumeric("y");
  script.addCase({kSystemMissing, 1.0}, 2);
  script.command = "PROPORTIONS " + GetParam() + ".";
  const DumpedRun run = runWithDumps(script);
  const Lines dump = dumpOf(run, "PRPAlgorithm");
  EXPECT_EQ(dump, with(dump, "I Number of valid cases = 2"));
  const auto flag = std::find_if(dump.begin(), dump.end(), [](const std::string& line) {
    return line.starts_with("B Good Data indicator");
  });
  ASSERT_NE(flag, dump.end());
  EXPECT_EQ(*flag, "B Good Data indicator = false");
  EXPECT_EQ(run.standardOutput, "") << "the probe belongs to runs that give results";
}

INSTANTIATE_TEST_SUITE_P(Designs, WithoutGoodRecords,
                         testing::Values("/ONESAMPLE x", "/PAIREDSAMPLES x WITH y",
                                         "/INDEPENDENTSAMPLES x BY y"));

TEST(Runs, AResampleShowsItsNumberAndTheValuesOfItsBase) {
  const std::vector<std::string> dump =
      dumpOf(runWithDumps(independentScript()), "PRPAlgorithm", 2);
  std::vector<std::string> found;
  for (const std::string& line : dump) {
    if (line.find("Sample") != std::string::npos || line.find("m numeric") != std::string::npos ||
        line.find("Middle") != std::string::npos || line.find("trials") != std::string::npos) {
      found.push_back(line);
    }
  }
  // The resample's own grouping values reach from 2 to 4.
  EXPECT_EQ(found, linesOf(R"(
    I Pooling Sample Index = 1
    D Minimum numeric value = 0
    D Maximum numeric value = 1
    D Middle point = 0.5
    D Minimum numeric value = 1
    D Maximum numeric value = 5
    D Middle point = 3
    D Number of trials for group 1 = 2
    D Number of trials for group 2 = 2
  )"));
}

}  // namespace
}  // namespace diagnostics
