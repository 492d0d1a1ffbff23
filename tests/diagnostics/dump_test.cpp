// Every record's dump, field by field, as it is made and with a different value in every field.
#include "module/diag/dump.h"

#include <gtest/gtest.h>

#include "tests/diagnostics/display_lines.h"
#include "tests/diagnostics/record_templates.h"

namespace diagnostics {
namespace {

using namespace proportions;

recording::Script twoVariables() {
  recording::Script script;
  script.addNumeric("x");
  script.addString("s", 4);
  return script;
}

class Dump : public testing::Test {
 protected:
  recording::Host host_{twoVariables()};
  ProcedureDataSource source_;
  BpProcedure procedure_{"Proportions", 10};
  PRPValidSpecs specs_{source_};

  void expectLines(const Lines& lines) { EXPECT_EQ(displayLines(host_.transcript()), lines); }
  /// What follows the banner.
  void expectDump(const Lines& lines) { expectLines(joined(linesOf(kBanner), lines)); }
  /// The dump of an analysis object with nothing but some records.
  void expectRecords(const PRPAlgorithm& analysis, const Lines& records) {
    dumpAlgorithm(analysis);
    expectDump(withRecords(freshAnalysis(), records));
  }
};

TEST_F(Dump, SpecificationAsItIsMade) {
  dumpSpecification(specs_);
  expectDump(freshSpecification());
}

BinInfoElem element(SuccessRule rule, std::vector<double> numbers) {
  BinInfoElem made;
  made.rule = rule;
  made.numericValues = std::move(numbers);
  return made;
}

TEST_F(Dump, SpecificationFilled) {
  specs_.setModelType(Design::kIndependent);
  specs_.setTestVarIndices({3, 1});
  specs_.testVarInfo() = {element(SuccessRule::kFirst, {}), element(SuccessRule::kMidpoint, {})};
  specs_.setSecondVarIndices({2});
  specs_.secondVarInfo() = {element(SuccessRule::kCutpoint, {2.5})};
  specs_.setTestValue(0.25);
  specs_.setOrderedPairs(true);
  specs_.setGroupVarIndex(4);
  specs_.groupInfo() = element(SuccessRule::kLevels, {1, 2});
  specs_.setScopeAnalysis(false);
  specs_.setUserMissingIncluded(true);
  BinInfoElem& success = specs_.successInfo();
  success.rule = static_cast<SuccessRule>(7);
  success.categorical = false;
  success.stringValues = {"a", "long level"};
  success.obsLength = 2;
  specs_.setIgnoreCase(true);
  specs_.setPrintUpperCase(false);
  specs_.setPrintCategoryOrder(false);
  specs_.setConfidenceLevel(99);
  specs_.testTypes() = {true, false};
  specs_.ciTypes() = {false, true, true};
  dumpSpecification(specs_);
  const auto ruleOf = [](const std::string& rule) {
    return with(freshElement(), "S Binomial Option = \"" + rule + "\"");
  };
  Lines lines = freshSpecification(with(freshElement(), R"(
    S Binomial Option = "Undefined"
    B Categorical Variable = false
    SV String Values = ["a", "long level"]
    I OBS length = 2
  )"));
  lines = with(lines, R"(
    S Model Type = "Independent"
    IV Vector of Test Variable indices = [3, 1]
    IV Second Vector of Test Variable indices = [2]
    D Test Value = 0.25
    B Flag for Ordered Pair option = true
    I Group Variable Index = 4
    B Scope Analysis = false
    B User Missing Included = true
    B Ignore Case indicator = true
    B Print Upper Case indicator = false
    B Print Category Order = false
    D Confidence Interval Level as percent = 99
    BV Test Type Option flags = [1, 0]
    BV CI Type Option flags = [0, 1, 1]
  )");
  lines = inserted(lines, "Test Variable Vector Info Elements display start",
                   joined(ruleOf("First Category"), ruleOf("Middle Point")));
  lines = inserted(lines, "Second Variable Vector Info Elements display start",
                   with(ruleOf("Cut Point"), "DV Numeric Values = [2.5]"));
  expectDump(
      withGroupElement(lines, with(ruleOf("Category Levels"), "DV Numeric Values = [1, 2]")));
}

class ModelType : public Dump,
                  public testing::WithParamInterface<std::pair<int32_t, std::string>> {};

TEST_P(ModelType, IsShownAsText) {
  specs_.setModelType(static_cast<Design>(GetParam().first));
  dumpSpecification(specs_);
  EXPECT_EQ(displayLines(host_.transcript()).at(6), "S Model Type = \"" + GetParam().second + "\"");
}

INSTANTIATE_TEST_SUITE_P(Codes, ModelType,
                         testing::Values(std::pair(0, "One Sample"), std::pair(1, "Related"),
                                         std::pair(2, "Independent"), std::pair(3, "Undefined"),
                                         std::pair(-1, "Undefined")));

TEST_F(Dump, AnalysisAsItIsMade) {
  const PRPAlgorithm analysis(source_, procedure_, specs_);
  dumpAlgorithm(analysis);
  expectDump(freshAnalysis());
}

TEST_F(Dump, AnalysisFilled) {
  PRPAlgorithm analysis(source_, procedure_, specs_);
  analysis.initialDataPass = false;
  analysis.weightVarIndex = 5;
  analysis.splitFile = true;
  analysis.splitsAsRows = true;
  analysis.goodData = false;
  analysis.completeData = false;
  analysis.nAll = 10;
  analysis.nValid = 7;
  analysis.nInvalid = 3;
  analysis.wAll = 20.0;
  analysis.wValid = 15.0;
  analysis.wInvalid = 5.0;
  analysis.alpha = 0.25;
  analysis.zCrit = 1.5;
  analysis.needAggregation = true;
  analysis.needSuccessAggregation = true;
  analysis.needSelectAggregation = true;
  analysis.bootstrapping = true;
  analysis.multipleImputation = true;
  analysis.poolingVarIndex = 8;
  analysis.poolingSampleIndex = 2;
  analysis.userSplitIndices = {4, 6};
  dumpAlgorithm(analysis);
  Lines lines = with(freshAnalysis(), R"(
    B Initial data pass indicator = false
    B Split file indicator = true
    B Splits as Rows indicator = true
    B Good Data indicator = false
    B Complete Data indicator = false
    I Number of all cases = 10
    I Number of valid cases = 7
    I Number of invalid cases = 3
    D Weighted number of all cases = 20
    D Weighted number of valid cases = 15
    D Weighted number of invalid cases = 5
    D Alpha level = 0.25
    D IDF Normal value of adjusted confidence level = 1.5
    B Need aggregation flag = true
    B Need success aggregation flag = true
    B Need select aggregation flag = true
    B Bootstrapping flag = true
    B Multiple Imputation flag = true
    I Pooling Variable Index = 8
    I Pooling Sample Index = 2
  )");
  lines = replaced(lines, "Weight variable is not defined", {"I Weight variable index = 5"});
  expectDump(
      replaced(lines, "User Split Indices are not defined", {"IV User Split Indices = [4, 6]"}));
}

TEST_F(Dump, CategoriesAsTheyAreMade) {
  PRPAlgorithm analysis(source_, procedure_, specs_);
  analysis.testVarCats.push_back(std::make_unique<VarCatInfo>());
  expectRecords(analysis, freshCategories());
}

TEST_F(Dump, CategoriesFilled) {
  PRPAlgorithm analysis(source_, procedure_, specs_);
  VarCatInfo cats;
  cats.isString = true;
  cats.numericValues = {9};
  cats.stringValues = {"a", "b"};
  cats.categoryCounts = {1, 2};
  cats.totalCount = 3;
  cats.weightedCounts = {1.5, 2.5};
  cats.weightedTotal = 4;
  cats.hasValidValue = true;
  cats.minValue = 5;
  cats.maxValue = 7;
  cats.midPoint = 6;
  cats.minString = "first";
  cats.maxString = "last";
  analysis.groupCats = std::make_unique<VarCatInfo>(cats);
  const Lines ofStrings = replaced(freshCategories(), "DV Numeric Categorical Values = []",
                                   {R"(SV String Categorical Values = ["a", "b"])"});
  expectRecords(analysis, with(ofStrings, R"(
    IV Category Counts = [1, 2]
    I Total Category Count = 3
    DV Weighted Category Counts = [1.5, 2.5]
    D Weighted Total Category Count = 4
    B Has valid value flag = true
    D Minimum numeric value = 5
    D Maximum numeric value = 7
    D Middle point = 6
    S Minimum string value = "first"
    S Maximum string value = "last"
  )"));
}

TEST_F(Dump, CategoriesOfBothListsThenOfTheGroupingVariableThenTheRecords) {
  PRPAlgorithm analysis(source_, procedure_, specs_);
  const auto cats = [](int32_t count) {
    VarCatInfo made;
    made.totalCount = count;
    return std::make_unique<VarCatInfo>(made);
  };
  analysis.groupCats = cats(3);
  analysis.secondVarCats.push_back(cats(2));
  analysis.testVarCats.push_back(cats(1));
  analysis.oneSampleRecords.resize(2);
  dumpAlgorithm(analysis);
  std::vector<std::string> found;
  for (const std::string& line : displayLines(host_.transcript())) {
    if (line.rfind("I Total Category Count", 0) == 0 || line == "PropZOneSamp display start") {
      found.push_back(line);
    }
  }
  EXPECT_EQ(found, linesOf(R"(
    I Total Category Count = 1
    I Total Category Count = 2
    I Total Category Count = 3
    PropZOneSamp display start
    PropZOneSamp display start
  )"));
}

TEST_F(Dump, ValuesOfBothKinds) {
  dumpValue(VarValue());
  dumpValue(VarValue::number(2.5));
  dumpValue(VarValue::text("yes"));
  expectLines(linesOf(R"(
    VarValue display start
    D Numeric Value = missing
    VarValue display end
    VarValue display start
    D Numeric Value = 2.5
    VarValue display end
    VarValue display start
    S String Value = "yes"
    VarValue display end
  )"));
}

TEST_F(Dump, OneSampleRecords) {
  PRPAlgorithm analysis(source_, procedure_, specs_);
  analysis.oneSampleRecords = {PropZOneSamp{}, PropZOneSamp{1, 2, 3, 4, 5, 6, 7, 8, false, false}};
  expectRecords(analysis, joined(freshOneSampleRecord(), with(freshOneSampleRecord(), R"(
    I Local variable index = 1
    D Number of successes = 2
    D Number of failures = 3
    D Number of trials = 4
    D Population proportion = 5
    D Estimated difference = 6
    D _aseDiff0 = 7
    D _aseDiff1 = 8
    B Good Data indicator = false
    B Complete Data indicator = false
  )")));
}

TEST_F(Dump, PairedRecords) {
  PRPAlgorithm analysis(source_, procedure_, specs_);
  analysis.pairedRecords = {PropZPairSamp{},
                            PropZPairSamp{1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11,    12,   13,
                                          14, 15, 16, 17, 18, 19, 20, 21, 22, 23, false, false}};
  expectRecords(analysis, joined(freshPairedRecord(), with(freshPairedRecord(), R"(
    I Variable pair index = 1
    I First local variable index = 2
    I Second local variable index = 3
    D _n11 = 4
    D _n10 = 5
    D _n01 = 6
    D _n00 = 7
    D _n1p = 8
    D _np1 = 9
    D _n0p = 10
    D _np0 = 11
    D Number of observations = 12
    D _p11 = 13
    D _p10 = 14
    D _p01 = 15
    D _p00 = 16
    D Proportion for the first measurement = 17
    D Proportion for the second measurement = 18
    D Estimated difference = 19
    D Asymtotic standard error for the first proportion = 20
    D Asymtotic standard error for the second proportion = 21
    D _aseDiff0 = 22
    D _aseDiff1 = 23
    B Good Data indicator = false
    B Complete Data indicator = false
  )")));
}

TEST_F(Dump, IndependentRecords) {
  PRPAlgorithm analysis(source_, procedure_, specs_);
  analysis.independentRecords = {PropZIndSamp{}, PropZIndSamp{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12,
                                                              13, 14, 15, false, false}};
  expectRecords(analysis, joined(freshIndependentRecord(), with(freshIndependentRecord(), R"(
    I Local variable index = 1
    D Number of successes for group 1 = 2
    D Number of failures for group 1 = 3
    D Number of trials for group 1 = 4
    D Number of successes for group 2 = 5
    D Number of failures for group 2 = 6
    D Number of trials for group 2 = 7
    D Number of observations = 8
    D Population proportion for group 1 = 9
    D Population proportion for group 2 = 10
    D Estimated difference = 11
    D Asymtotic standard error for the first proportion = 12
    D Asymtotic standard error for the second proportion = 13
    D _aseDiff0 = 14
    D _aseDiff1 = 15
    B Good Data indicator = false
    B Complete Data indicator = false
  )")));
}

}  // namespace
}  // namespace diagnostics
