#include "module/diag/dump.h"

#include <string>

#include "module/diag/fields.h"
#include "module/model/designs.h"
#include "module/model/success_rule.h"

namespace proportions {
namespace {

constexpr char kUndefined[] = "Undefined";

constexpr Field<VarCatInfo> kCategoryFields[] = {
    {"Category Counts", &VarCatInfo::categoryCounts},
    {"Total Category Count", &VarCatInfo::totalCount},
    {"Weighted Category Counts", &VarCatInfo::weightedCounts},
    {"Weighted Total Category Count", &VarCatInfo::weightedTotal},
    {"Has valid value flag", &VarCatInfo::hasValidValue},
    {"Minimum numeric value", &VarCatInfo::minValue},
    {"Maximum numeric value", &VarCatInfo::maxValue},
    {"Middle point", &VarCatInfo::midPoint},
    {"Minimum string value", &VarCatInfo::minString},
    {"Maximum string value", &VarCatInfo::maxString}};

constexpr Field<BinInfoElem> kElementFields[] = {
    {"Categorical Variable", &BinInfoElem::categorical},
    {"Numeric Values", &BinInfoElem::numericValues},
    {"String Values", &BinInfoElem::stringValues},
    {"OBS length", &BinInfoElem::obsLength}};

constexpr Field<PropZOneSamp> kOneSampleFields[] = {
    {"Local variable index", &PropZOneSamp::localVarIndex},
    {"Number of successes", &PropZOneSamp::numSuccesses},
    {"Number of failures", &PropZOneSamp::numFailures},
    {"Number of trials", &PropZOneSamp::numTrials},
    {"Population proportion", &PropZOneSamp::populationProportion},
    {"Estimated difference", &PropZOneSamp::estimatedDifference},
    {"_aseDiff0", &PropZOneSamp::_aseDiff0},
    {"_aseDiff1", &PropZOneSamp::_aseDiff1},
    {"Good Data indicator", &PropZOneSamp::goodData},
    {"Complete Data indicator", &PropZOneSamp::completeData}};

constexpr Field<PropZPairSamp> kPairedFields[] = {
    {"Variable pair index", &PropZPairSamp::pairIndex},
    {"First local variable index", &PropZPairSamp::firstLocalVarIndex},
    {"Second local variable index", &PropZPairSamp::secondLocalVarIndex},
    {"_n11", &PropZPairSamp::_n11},
    {"_n10", &PropZPairSamp::_n10},
    {"_n01", &PropZPairSamp::_n01},
    {"_n00", &PropZPairSamp::_n00},
    {"_n1p", &PropZPairSamp::_n1p},
    {"_np1", &PropZPairSamp::_np1},
    {"_n0p", &PropZPairSamp::_n0p},
    {"_np0", &PropZPairSamp::_np0},
    {"Number of observations", &PropZPairSamp::numObservations},
    {"_p11", &PropZPairSamp::_p11},
    {"_p10", &PropZPairSamp::_p10},
    {"_p01", &PropZPairSamp::_p01},
    {"_p00", &PropZPairSamp::_p00},
    {"Proportion for the first measurement", &PropZPairSamp::firstProportion},
    {"Proportion for the second measurement", &PropZPairSamp::secondProportion},
    {"Estimated difference", &PropZPairSamp::estimatedDifference},
    {"Asymtotic standard error for the first proportion", &PropZPairSamp::firstAse},
    {"Asymtotic standard error for the second proportion", &PropZPairSamp::secondAse},
    {"_aseDiff0", &PropZPairSamp::_aseDiff0},
    {"_aseDiff1", &PropZPairSamp::_aseDiff1},
    {"Good Data indicator", &PropZPairSamp::goodData},
    {"Complete Data indicator", &PropZPairSamp::completeData}};

constexpr Field<PropZIndSamp> kIndependentFields[] = {
    {"Local variable index", &PropZIndSamp::localVarIndex},
    {"Number of successes for group 1", &PropZIndSamp::numSuccesses1},
    {"Number of failures for group 1", &PropZIndSamp::numFailures1},
    {"Number of trials for group 1", &PropZIndSamp::numTrials1},
    {"Number of successes for group 2", &PropZIndSamp::numSuccesses2},
    {"Number of failures for group 2", &PropZIndSamp::numFailures2},
    {"Number of trials for group 2", &PropZIndSamp::numTrials2},
    {"Number of observations", &PropZIndSamp::numObservations},
    {"Population proportion for group 1", &PropZIndSamp::populationProportion1},
    {"Population proportion for group 2", &PropZIndSamp::populationProportion2},
    {"Estimated difference", &PropZIndSamp::estimatedDifference},
    {"Asymtotic standard error for the first proportion", &PropZIndSamp::ase1},
    {"Asymtotic standard error for the second proportion", &PropZIndSamp::ase2},
    {"_aseDiff0", &PropZIndSamp::_aseDiff0},
    {"_aseDiff1", &PropZIndSamp::_aseDiff1},
    {"Good Data indicator", &PropZIndSamp::goodData},
    {"Complete Data indicator", &PropZIndSamp::completeData}};

constexpr Field<PRPAlgorithm> kAlgorithmFields[] = {
    {"Split file indicator", &PRPAlgorithm::splitFile},
    {"Splits as Rows indicator", &PRPAlgorithm::splitsAsRows},
    {"Good Data indicator", &PRPAlgorithm::goodData},
    {"Complete Data indicator", &PRPAlgorithm::completeData},
    {"Number of all cases", &PRPAlgorithm::nAll},
    {"Number of valid cases", &PRPAlgorithm::nValid},
    {"Number of invalid cases", &PRPAlgorithm::nInvalid},
    {"Weighted number of all cases", &PRPAlgorithm::wAll},
    {"Weighted number of valid cases", &PRPAlgorithm::wValid},
    {"Weighted number of invalid cases", &PRPAlgorithm::wInvalid},
    {"Alpha level", &PRPAlgorithm::alpha},
    {"IDF Normal value of adjusted confidence level", &PRPAlgorithm::zCrit},
    {"Need aggregation flag", &PRPAlgorithm::needAggregation},
    {"Need success aggregation flag", &PRPAlgorithm::needSuccessAggregation},
    {"Need select aggregation flag", &PRPAlgorithm::needSelectAggregation},
    {"Bootstrapping flag", &PRPAlgorithm::bootstrapping},
    {"Multiple Imputation flag", &PRPAlgorithm::multipleImputation},
    {"Pooling Variable Index", &PRPAlgorithm::poolingVarIndex},
    {"Pooling Sample Index", &PRPAlgorithm::poolingSampleIndex}};

constexpr Field<CommandSettings> kMissingFields[] = {
    {"Scope Analysis", &CommandSettings::scopeAnalysis},
    {"User Missing Included", &CommandSettings::userMissingIncluded}};

constexpr Field<CommandSettings> kFinalFields[] = {
    {"Ignore Case indicator", &CommandSettings::ignoreCase},
    {"Print Upper Case indicator", &CommandSettings::printUpperCase},
    {"Print Category Order", &CommandSettings::printCategoryOrder},
    {"Confidence Interval Level as percent", &CommandSettings::ciLevel},
    {"Test Type Option flags", &CommandSettings::testTypes},
    {"CI Type Option flags", &CommandSettings::ciTypes}};

void dumpBanner() {
  dumpLine("****************************************************\n");
  dumpLine("* This text output is for debugging purposes only. *\n");
  dumpLine("* This will not be part of the final release.      *\n");
  dumpLine("****************************************************");
}

void dumpElement(const BinInfoElem& element) {
  framed("BinInfoElem", [&] {
    const SuccessRuleRow* rule = findRule(element.rule);
    dumpField("Binomial Option", std::string(rule == nullptr ? kUndefined : rule->dumpText));
    dumpFields(element, kElementFields);
  });
}

void dumpElements(const std::string& name, const std::vector<BinInfoElem>& elements) {
  framed(name, [&] {
    for (const BinInfoElem& element : elements) dumpElement(element);
  });
}

void dumpCats(const VarCatInfo& cats) {
  framed("VarCatInfo", [&] {
    if (cats.isString) {
      dumpField("String Categorical Values", cats.stringValues);
    } else {
      dumpField("Numeric Categorical Values", cats.numericValues);
    }
    dumpFields(cats, kCategoryFields);
  });
}

template <typename Record, size_t N>
void dumpRecords(const char* name, const std::vector<Record>& records,
                 const Field<Record> (&fields)[N]) {
  for (const Record& record : records) {
    framed(name, [&] { dumpFields(record, fields); });
  }
}

void dumpObjectFields(const PRPAlgorithm& analysis) {
  dumpField("Initial data pass indicator", analysis.initialDataPass);
  if (analysis.weightVarIndex < 0) {
    dumpLine("Weight variable is not defined");
  } else {
    dumpField("Weight variable index", analysis.weightVarIndex);
  }
  dumpFields(analysis, kAlgorithmFields);
  if (analysis.userSplitIndices.empty()) {
    dumpLine("User Split Indices are not defined");
  } else {
    dumpField("User Split Indices", analysis.userSplitIndices);
  }
}

void dumpLists(const CommandSettings& settings) {
  dumpField("Vector of Test Variable indices", settings.testVarIndices);
  dumpElements("Test Variable Vector Info Elements", settings.testVarInfo);
  dumpField("Second Vector of Test Variable indices", settings.secondVarIndices);
  dumpElements("Second Variable Vector Info Elements", settings.secondVarInfo);
}

void dumpGrouping(const CommandSettings& settings) {
  dumpField("Group Variable Index", settings.groupVarIndex);
  if (settings.groupVarIndex >= 0) {
    framed("Group Info Element", [&] { dumpElement(settings.groupInfo); });
  } else {
    dumpLine("Group Info Element not defined");
  }
}

}  // namespace

void dumpValue(const VarValue& value) {
  framed("VarValue", [&] {
    if (value.isString) {
      dumpField("String Value", value.stringValue);
    } else {
      dumpField("Numeric Value", value.numericValue);
    }
  });
}

void dumpSpecification(const PRPValidSpecs& specs) {
  const CommandSettings& settings = specs.settings();
  dumpBanner();
  framed("PRPValidSpecs", [&] {
    if (specs.variableSpecs() == nullptr) dumpLine("Variable valid specifications are not defined");
    const DesignRow* design = findDesign(settings.modelType);
    dumpField("Model Type", std::string(design == nullptr ? kUndefined : design->dumpText));
    dumpLists(settings);
    dumpField("Test Value", settings.testValue);
    dumpField("Flag for Ordered Pair option", settings.orderedPair);
    dumpGrouping(settings);
    dumpFields(settings, kMissingFields);
    framed("Success Info Element", [&] { dumpElement(specs.successInfo()); });
    dumpFields(settings, kFinalFields);
  });
}

void dumpAlgorithm(const PRPAlgorithm& analysis) {
  dumpBanner();
  framed("PRPAlgorithm", [&] {
    dumpObjectFields(analysis);
    for (const auto& cats : analysis.testVarCats) dumpCats(*cats);
    for (const auto& cats : analysis.secondVarCats) dumpCats(*cats);
    if (analysis.groupCats) dumpCats(*analysis.groupCats);
    dumpRecords("PropZOneSamp", analysis.oneSampleRecords, kOneSampleFields);
    dumpRecords("PropZPairSamp", analysis.pairedRecords, kPairedFields);
    dumpRecords("PropZIndSamp", analysis.independentRecords, kIndependentFields);
  });
}

}  // namespace proportions
