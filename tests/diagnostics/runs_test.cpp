// What whole runs of the three designs dump, with the values worked out by hand.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/diagnostics/dumped_run.h"

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

TEST(Runs, OneSampleSpecification) {
  EXPECT_EQ(dumpOf(runWithDumps(oneSampleScript()), "PRPValidSpecs"), linesOf(R"(
    PRPValidSpecs display start
    Variable valid specifications are not defined
    S Model Type = "One Sample"
    IV Vector of Test Variable indices = [0]
    Test Variable Vector Info Elements display start
    BinInfoElem display start
    S Binomial Option = "Cut Point"
    B Categorical Variable = false
    DV Numeric Values = [0.5]
    SV String Values = ["0.5"]
    I OBS length = 1
    BinInfoElem display end
    Test Variable Vector Info Elements display end
    IV Second Vector of Test Variable indices = []
    Second Variable Vector Info Elements display start
    Second Variable Vector Info Elements display end
    D Test Value = 0.25
    B Flag for Ordered Pair option = false
    I Group Variable Index = -1
    Group Info Element not defined
    B Scope Analysis = true
    B User Missing Included = false
    Success Info Element display start
    BinInfoElem display start
    S Binomial Option = "Cut Point"
    B Categorical Variable = false
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
    Success Info Element display end
    B Ignore Case indicator = false
    B Print Upper Case indicator = true
    B Print Category Order = true
    D Confidence Interval Level as percent = 75
    BV Test Type Option flags = [1, 0, 0, 0, 0, 1]
    BV CI Type Option flags = [0, 0, 0, 0, 1, 0, 0, 0, 0]
    PRPValidSpecs display end
  )"));
}

// 12 successes of 16: p = 0.75, p - p0 = 0.5, sqrt(0.1875 / 16) = 0.10825... twice.
TEST(Runs, OneSampleAnalysis) {
  EXPECT_EQ(dumpOf(runWithDumps(oneSampleScript()), "PRPAlgorithm"), linesOf(R"(
    PRPAlgorithm display start
    B Initial data pass indicator = false
    I Weight variable index = 1
    B Split file indicator = false
    B Splits as Rows indicator = false
    B Good Data indicator = true
    B Complete Data indicator = true
    I Number of all cases = 3
    I Number of valid cases = 2
    I Number of invalid cases = 1
    D Weighted number of all cases = 16
    D Weighted number of valid cases = 16
    D Weighted number of invalid cases = 0
    D Alpha level = 0.25
    D IDF Normal value of adjusted confidence level = 1.5
    B Need aggregation flag = false
    B Need success aggregation flag = false
    B Need select aggregation flag = false
    B Bootstrapping flag = false
    B Multiple Imputation flag = false
    I Pooling Variable Index = -1
    I Pooling Sample Index = 0
    User Split Indices are not defined
    VarCatInfo display start
    DV Numeric Categorical Values = []
    IV Category Counts = []
    I Total Category Count = 0
    DV Weighted Category Counts = []
    D Weighted Total Category Count = 0
    B Has valid value flag = true
    D Minimum numeric value = 0
    D Maximum numeric value = 1
    D Middle point = 0.5
    S Minimum string value = ""
    S Maximum string value = ""
    VarCatInfo display end
    PropZOneSamp display start
    I Local variable index = 0
    D Number of successes = 12
    D Number of failures = 4
    D Number of trials = 16
    D Population proportion = 0.75
    D Estimated difference = 0.5
    D _aseDiff0 = 0.10825317547305482
    D _aseDiff1 = 0.10825317547305482
    B Good Data indicator = true
    B Complete Data indicator = true
    PropZOneSamp display end
    PRPAlgorithm display end
  )"));
}

TEST(Runs, PairedSpecification) {
  EXPECT_EQ(dumpOf(runWithDumps(pairedScript()), "PRPValidSpecs"), linesOf(R"(
    PRPValidSpecs display start
    Variable valid specifications are not defined
    S Model Type = "Related"
    IV Vector of Test Variable indices = [0]
    Test Variable Vector Info Elements display start
    BinInfoElem display start
    S Binomial Option = "Last Category"
    B Categorical Variable = true
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
    Test Variable Vector Info Elements display end
    IV Second Vector of Test Variable indices = [1]
    Second Variable Vector Info Elements display start
    BinInfoElem display start
    S Binomial Option = "Last Category"
    B Categorical Variable = true
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
    Second Variable Vector Info Elements display end
    D Test Value = 0.5
    B Flag for Ordered Pair option = true
    I Group Variable Index = -1
    Group Info Element not defined
    B Scope Analysis = false
    B User Missing Included = true
    Success Info Element display start
    BinInfoElem display start
    S Binomial Option = "Last Category"
    B Categorical Variable = true
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
    Success Info Element display end
    B Ignore Case indicator = false
    B Print Upper Case indicator = true
    B Print Category Order = true
    D Confidence Interval Level as percent = 50
    BV Test Type Option flags = [0, 0, 0, 0, 0, 0]
    BV CI Type Option flags = [0, 0, 0, 0, 0]
    PRPValidSpecs display end
  )"));
}

// 6, 3, 1 and 6 of 16 cases: p1 = 9/16, p2 = 7/16; the first error is sqrt(9·7 / 256 / 9), the
// second sqrt(9·7 / 256 / 7) = 3/16, and the variances of the difference are 4/256 and
// (1/4 - 1/64) / 16.
TEST(Runs, PairedAnalysis) {
  EXPECT_EQ(dumpOf(runWithDumps(pairedScript()), "PRPAlgorithm"), linesOf(R"(
    PRPAlgorithm display start
    B Initial data pass indicator = false
    Weight variable is not defined
    B Split file indicator = false
    B Splits as Rows indicator = false
    B Good Data indicator = true
    B Complete Data indicator = true
    I Number of all cases = 18
    I Number of valid cases = 16
    I Number of invalid cases = 2
    D Weighted number of all cases = 18
    D Weighted number of valid cases = 16
    D Weighted number of invalid cases = 2
    D Alpha level = 0.5
    D IDF Normal value of adjusted confidence level = 1.5
    B Need aggregation flag = false
    B Need success aggregation flag = false
    B Need select aggregation flag = false
    B Bootstrapping flag = false
    B Multiple Imputation flag = false
    I Pooling Variable Index = -1
    I Pooling Sample Index = 0
    User Split Indices are not defined
    VarCatInfo display start
    SV String Categorical Values = []
    IV Category Counts = []
    I Total Category Count = 0
    DV Weighted Category Counts = []
    D Weighted Total Category Count = 0
    B Has valid value flag = true
    D Minimum numeric value = missing
    D Maximum numeric value = missing
    D Middle point = missing
    S Minimum string value = "no"
    S Maximum string value = "yes"
    VarCatInfo display end
    VarCatInfo display start
    DV Numeric Categorical Values = []
    IV Category Counts = []
    I Total Category Count = 0
    DV Weighted Category Counts = []
    D Weighted Total Category Count = 0
    B Has valid value flag = true
    D Minimum numeric value = 0
    D Maximum numeric value = 1
    D Middle point = 0.5
    S Minimum string value = ""
    S Maximum string value = ""
    VarCatInfo display end
    PropZPairSamp display start
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
    B Good Data indicator = true
    B Complete Data indicator = true
    PropZPairSamp display end
    PRPAlgorithm display end
  )"));
}

TEST(Runs, LevelsOfAStringHaveNoNumbers) {
  recording::Script script;
  script.addString("s", 9);
  script.addCase({"yes"});
  script.command = "PROPORTIONS /ONESAMPLE s /SUCCESS VALUE=LEVEL('yes' 1).";
  EXPECT_EQ(dumpOf(runWithDumps(script), "BinInfoElem"), linesOf(R"(
    BinInfoElem display start
    S Binomial Option = "Category Levels"
    B Categorical Variable = true
    DV Numeric Values = [missing, 1]
    SV String Values = ["yes", "1"]
    I OBS length = 2
    BinInfoElem display end
  )"));
}

TEST(Runs, IndependentSpecification) {
  EXPECT_EQ(dumpOf(runWithDumps(independentScript()), "PRPValidSpecs"), linesOf(R"(
    PRPValidSpecs display start
    Variable valid specifications are not defined
    S Model Type = "Independent"
    IV Vector of Test Variable indices = [0]
    Test Variable Vector Info Elements display start
    BinInfoElem display start
    S Binomial Option = "Last Category"
    B Categorical Variable = true
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
    Test Variable Vector Info Elements display end
    IV Second Vector of Test Variable indices = []
    Second Variable Vector Info Elements display start
    Second Variable Vector Info Elements display end
    D Test Value = 0.5
    B Flag for Ordered Pair option = false
    I Group Variable Index = 1
    Group Info Element display start
    BinInfoElem display start
    S Binomial Option = "Middle Point"
    B Categorical Variable = false
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
    Group Info Element display end
    B Scope Analysis = true
    B User Missing Included = false
    Success Info Element display start
    BinInfoElem display start
    S Binomial Option = "Last Category"
    B Categorical Variable = true
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
    Success Info Element display end
    B Ignore Case indicator = false
    B Print Upper Case indicator = true
    B Print Category Order = true
    D Confidence Interval Level as percent = 50
    BV Test Type Option flags = [0, 0, 0, 1, 0]
    BV CI Type Option flags = [1, 1, 1, 1, 1, 1, 1]
    PRPValidSpecs display end
  )"));
}

// 6 of 8 against 2 of 8: each error is sqrt(0.1875 / 8), that of the difference sqrt(2) times as
// large, and under equal proportions, pooled 1/2, sqrt(2 · 0.25 / 8).
TEST(Runs, IndependentAnalysisOfTheBaseData) {
  EXPECT_EQ(dumpOf(runWithDumps(independentScript()), "PRPAlgorithm"), linesOf(R"(
    PRPAlgorithm display start
    B Initial data pass indicator = false
    Weight variable is not defined
    B Split file indicator = true
    B Splits as Rows indicator = true
    B Good Data indicator = true
    B Complete Data indicator = true
    I Number of all cases = 16
    I Number of valid cases = 16
    I Number of invalid cases = 0
    D Weighted number of all cases = 16
    D Weighted number of valid cases = 16
    D Weighted number of invalid cases = 0
    D Alpha level = 0.5
    D IDF Normal value of adjusted confidence level = 1.5
    B Need aggregation flag = true
    B Need success aggregation flag = true
    B Need select aggregation flag = true
    B Bootstrapping flag = true
    B Multiple Imputation flag = false
    I Pooling Variable Index = 2
    I Pooling Sample Index = 0
    IV User Split Indices = [3]
    VarCatInfo display start
    DV Numeric Categorical Values = []
    IV Category Counts = []
    I Total Category Count = 0
    DV Weighted Category Counts = []
    D Weighted Total Category Count = 0
    B Has valid value flag = true
    D Minimum numeric value = 0
    D Maximum numeric value = 1
    D Middle point = 0.5
    S Minimum string value = ""
    S Maximum string value = ""
    VarCatInfo display end
    VarCatInfo display start
    DV Numeric Categorical Values = []
    IV Category Counts = []
    I Total Category Count = 0
    DV Weighted Category Counts = []
    D Weighted Total Category Count = 0
    B Has valid value flag = true
    D Minimum numeric value = 1
    D Maximum numeric value = 5
    D Middle point = 3
    S Minimum string value = ""
    S Maximum string value = ""
    VarCatInfo display end
    PropZIndSamp display start
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
    B Good Data indicator = true
    B Complete Data indicator = true
    PropZIndSamp display end
    PRPAlgorithm display end
  )"));
}

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
