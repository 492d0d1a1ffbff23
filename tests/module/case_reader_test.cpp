// Cases as the module takes them in: weights, missing values, and what no command can switch on.
#include "module/data/case_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "module/model/algorithm.h"
#include "tests/recording/host.h"

namespace proportions {
namespace {

TEST(RoundedWeight, HalvesGoUpAndWhatIsBelowOneHalfDropsTheCase) {
  const std::pair<double, std::optional<double>> weights[] = {{1, 1.0},
                                                              {0.5, 1.0},
                                                              {1.49, 1.0},
                                                              {2.5, 3.0},
                                                              {1e15, 1e15},
                                                              {0.49, {}},
                                                              {0, {}},
                                                              {-2, {}},
                                                              {NAN, {}},
                                                              {kSystemMissing, {}},
                                                              {0.49999999999999994, {}}};
  for (const auto& [raw, counted] : weights) EXPECT_EQ(roundedWeight(raw), counted) << raw;
}

/// An analysis of one string variable with these values. What is set in `specs` before the first
/// call of analysis() is what the analysis goes by.
class Reading {
 public:
  explicit Reading(const std::vector<std::string>& values, const BinInfoElem& definition = {})
      : host_(scriptOf(values)) {
    specs.setTestVarIndices({0});
    specs.testVarInfo() = {definition};
  }

  PRPAlgorithm& analysis() {
    if (analysis_ == nullptr) {
      analysis_ = std::make_unique<PRPAlgorithm>(source_, procedure_, specs);
      analysis_->testVarCats.push_back(std::make_unique<VarCatInfo>());
      analysis_->testVarCats[0]->isString = true;
    }
    return *analysis_;
  }

  std::vector<Code> codes() {
    CaseReader reader(analysis(), static_cast<ProcDSIterator&>(*iterator_));
    UsedCase used;
    std::vector<Code> found;
    while (reader.nextUsedCase(used)) {
      found.push_back(analysis().initialDataPass ? kNotCounted : used.first.at(0));
    }
    return found;
  }

 private:
  static recording::Script scriptOf(const std::vector<std::string>& values) {
    recording::Script script;
    script.addString("s", 5);
    for (const std::string& value : values) script.addCase({value});
    return script;
  }

  recording::Host host_;
  ProcedureDataSource source_;
  BpProcedure procedure_{"Proportions", 10};

 public:
  PRPValidSpecs specs{source_};

 private:
  std::unique_ptr<PRPAlgorithm> analysis_;
  std::unique_ptr<ZELK_InputCaseIterator> iterator_{source_.MakeIterator()};
};

BinInfoElem definitionBy(SuccessRule rule, std::vector<std::string> levels) {
  BinInfoElem definition;
  definition.rule = rule;
  definition.stringValues = std::move(levels);
  return definition;
}

std::vector<Code> codesFor(bool ignoreCase, bool printUpperCase, const char* level) {
  Reading reading({"abc", "ABC", "Abc", "x"}, definitionBy(SuccessRule::kLevels, {level}));
  reading.specs.setIgnoreCase(ignoreCase);
  reading.specs.setPrintUpperCase(printUpperCase);
  reading.analysis().initialDataPass = false;
  return reading.codes();
}

TEST(IgnoreCase, FoldsInTheDirectionOfThePrint) {
  EXPECT_EQ(codesFor(false, true, "ABC"), (std::vector<Code>{0, 1, 0, 0}));
  EXPECT_EQ(codesFor(true, true, "ABC"), (std::vector<Code>{1, 1, 1, 0}));
  EXPECT_EQ(codesFor(true, true, "abc"), (std::vector<Code>{0, 0, 0, 0}));
  EXPECT_EQ(codesFor(true, false, "abc"), (std::vector<Code>{1, 1, 1, 0}));
}

TEST(StringValues, HaveNoMidpointAndNoCutPoint) {
  for (const SuccessRule rule : {SuccessRule::kMidpoint, SuccessRule::kCutpoint}) {
    Reading reading({"abc", "x"}, definitionBy(rule, {}));
    reading.analysis().initialDataPass = false;
    EXPECT_EQ(reading.codes(), (std::vector<Code>{0, 0})) << static_cast<int32_t>(rule);
  }
}

TEST(Counters, StopAtTheLargestNumber) {
  Reading reading({"a", "b", "c"});
  reading.analysis().nAll = std::numeric_limits<int32_t>::max() - 1;
  reading.analysis().nValid = std::numeric_limits<int32_t>::max();
  EXPECT_EQ(reading.codes(), (std::vector<Code>(3, kNotCounted)));
  EXPECT_EQ(reading.analysis().nAll, std::numeric_limits<int32_t>::max());
  EXPECT_EQ(reading.analysis().nValid, std::numeric_limits<int32_t>::max());
  EXPECT_EQ(reading.analysis().wValid, 3);
}

TEST(Counters, OfCasesThatAreNotUsedStopsAtTheLargestNumber) {
  Reading reading({"a", "", ""});
  reading.specs.setScopeAnalysis(false);
  reading.analysis().initialDataPass = false;
  reading.analysis().nInvalid = std::numeric_limits<int32_t>::max() - 1;
  EXPECT_EQ(reading.codes().size(), 1U);
  EXPECT_EQ(reading.analysis().nInvalid, std::numeric_limits<int32_t>::max());
  EXPECT_EQ(reading.analysis().wInvalid, 2);
}

TEST(FirstPass, CollectsExtremesInTheOrderOfTheCollation) {
  Reading reading({"b", "", "abc", "d", "c"});
  reading.codes();
  const VarCatInfo& cats = *reading.analysis().testVarCats[0];
  EXPECT_TRUE(cats.hasValidValue);
  EXPECT_EQ(cats.minString, "abc");
  EXPECT_EQ(cats.maxString, "d");
}

TEST(Specification, KeepsTheLevelWhenOneOutsideIsSet) {
  const recording::Host host(recording::Script{});
  ProcedureDataSource source;
  PRPValidSpecs specs(source);
  for (const double percent : {100.0, -1.0, 1e9, std::nan("")}) {
    specs.setConfidenceLevel(percent);
    EXPECT_EQ(specs.settings().ciLevel, 95.0) << percent;
  }
  specs.setConfidenceLevel(0);
  EXPECT_EQ(specs.settings().ciLevel, 0.0);
}

TEST(Specification, KeepsOrDropsRepeatedTestVariables) {
  const recording::Host host(recording::Script{});
  ProcedureDataSource source;
  PRPValidSpecs specs(source);
  specs.setTestVarIndices({3, 1, 3, 2, 1});
  EXPECT_EQ(specs.settings().testVarIndices, (std::vector<VarIndex>{3, 1, 3, 2, 1}));
  specs.setDistinctTestVarIndices({3, 1, 3, 2, 1});
  EXPECT_EQ(specs.settings().testVarIndices, (std::vector<VarIndex>{3, 1, 2}));
}

}  // namespace
}  // namespace proportions
