#include "module/diag/dump.h"

#include <string>

#include "host/display.h"

namespace proportions {
namespace {

using Display = ACACommonDisplay;

void line(const std::string& text) { BP_ToFront(text.c_str()); }

void banner() {
  BP_ToFront("****************************************************\n");
  BP_ToFront("* This text output is for debugging purposes only. *\n");
  BP_ToFront("* This will not be part of the final release.      *\n");
  BP_ToFront("****************************************************");
}

/// The start and end lines around a record's fields. The end is no destructor's: the display may
/// throw.
template <typename Fields>
void framed(const std::string& name, const Fields& dumpFields) {
  line(name + " display start");
  dumpFields();
  line(name + " display end");
}

const char* ruleText(int32_t rule) {
  switch (rule) {
    case kFirst:
      return "First Category";
    case kLast:
      return "Last Category";
    case kMidpoint:
      return "Middle Point";
    case kCutpoint:
      return "Cut Point";
    case kLevels:
      return "Category Levels";
    default:
      return "Undefined";
  }
}

const char* modelText(int32_t code) {
  switch (code) {
    case kOneSample:
      return "One Sample";
    case kPairedSamples:
      return "Related";
    case kIndependentSamples:
      return "Independent";
    default:
      return "Undefined";
  }
}

void dumpElement(const BinInfoElem& element) {
  framed("BinInfoElem", [&] {
    Display::DisplayS("Binomial Option", ruleText(element.rule));
    Display::DisplayB("Categorical Variable", element.categorical);
    Display::DisplayDV("Numeric Values", element.numericValues);
    Display::DisplaySV("String Values", element.stringValues);
    Display::DisplayI("OBS length", element.obsLength);
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
      Display::DisplaySV("String Categorical Values", cats.stringValues);
    } else {
      Display::DisplayDV("Numeric Categorical Values", cats.numericValues);
    }
    Display::DisplayIV("Category Counts", cats.categoryCounts);
    Display::DisplayI("Total Category Count", cats.totalCount);
    Display::DisplayDV("Weighted Category Counts", cats.weightedCounts);
    Display::DisplayD("Weighted Total Category Count", cats.weightedTotal);
    Display::DisplayB("Has valid value flag", cats.hasValidValue);
    Display::DisplayD("Minimum numeric value", cats.minValue);
    Display::DisplayD("Maximum numeric value", cats.maxValue);
    Display::DisplayD("Middle point", cats.midPoint);
    Display::DisplayS("Minimum string value", cats.minString);
    Display::DisplayS("Maximum string value", cats.maxString);
  });
}

void dumpFlags(bool goodData, bool completeData) {
  Display::DisplayB("Good Data indicator", goodData);
  Display::DisplayB("Complete Data indicator", completeData);
}

void dumpRecord(const PropZOneSamp& record) {
  framed("PropZOneSamp", [&] {
    Display::DisplayI("Local variable index", record.localVarIndex);
    Display::DisplayD("Number of successes", record.numSuccesses);
    Display::DisplayD("Number of failures", record.numFailures);
    Display::DisplayD("Number of trials", record.numTrials);
    Display::DisplayD("Population proportion", record.populationProportion);
    Display::DisplayD("Estimated difference", record.estimatedDifference);
    Display::DisplayD("_aseDiff0", record._aseDiff0);
    Display::DisplayD("_aseDiff1", record._aseDiff1);
    dumpFlags(record.goodData, record.completeData);
  });
}

void dumpRecord(const PropZPairSamp& record) {
  framed("PropZPairSamp", [&] {
    Display::DisplayI("Variable pair index", record.pairIndex);
    Display::DisplayI("First local variable index", record.firstLocalVarIndex);
    Display::DisplayI("Second local variable index", record.secondLocalVarIndex);
    const std::pair<const char*, double> fields[] = {
        {"_n11", record._n11},
        {"_n10", record._n10},
        {"_n01", record._n01},
        {"_n00", record._n00},
        {"_n1p", record._n1p},
        {"_np1", record._np1},
        {"_n0p", record._n0p},
        {"_np0", record._np0},
        {"Number of observations", record.numObservations},
        {"_p11", record._p11},
        {"_p10", record._p10},
        {"_p01", record._p01},
        {"_p00", record._p00},
        {"Proportion for the first measurement", record.firstProportion},
        {"Proportion for the second measurement", record.secondProportion},
        {"Estimated difference", record.estimatedDifference},
        {"Asymtotic standard error for the first proportion", record.firstAse},
        {"Asymtotic standard error for the second proportion", record.secondAse},
        {"_aseDiff0", record._aseDiff0},
        {"_aseDiff1", record._aseDiff1}};
    for (const auto& [label, value] : fields) Display::DisplayD(label, value);
    dumpFlags(record.goodData, record.completeData);
  });
}

void dumpRecord(const PropZIndSamp& record) {
  framed("PropZIndSamp", [&] {
    Display::DisplayI("Local variable index", record.localVarIndex);
    const std::pair<const char*, double> fields[] = {
        {"Number of successes for group 1", record.numSuccesses1},
        {"Number of failures for group 1", record.numFailures1},
        {"Number of trials for group 1", record.numTrials1},
        {"Number of successes for group 2", record.numSuccesses2},
        {"Number of failures for group 2", record.numFailures2},
        {"Number of trials for group 2", record.numTrials2},
        {"Number of observations", record.numObservations},
        {"Population proportion for group 1", record.populationProportion1},
        {"Population proportion for group 2", record.populationProportion2},
        {"Estimated difference", record.estimatedDifference},
        {"Asymtotic standard error for the first proportion", record.ase1},
        {"Asymtotic standard error for the second proportion", record.ase2},
        {"_aseDiff0", record._aseDiff0},
        {"_aseDiff1", record._aseDiff1}};
    for (const auto& [label, value] : fields) Display::DisplayD(label, value);
    dumpFlags(record.goodData, record.completeData);
  });
}

void dumpFields(const PRPAlgorithm& analysis) {
  Display::DisplayB("Initial data pass indicator", analysis.initialDataPass);
  if (analysis.weightVarIndex < 0) {
    line("Weight variable is not defined");
  } else {
    Display::DisplayI("Weight variable index", analysis.weightVarIndex);
  }
  Display::DisplayB("Split file indicator", analysis.splitFile);
  Display::DisplayB("Splits as Rows indicator", analysis.splitsAsRows);
  dumpFlags(analysis.goodData, analysis.completeData);
  Display::DisplayI("Number of all cases", analysis.nAll);
  Display::DisplayI("Number of valid cases", analysis.nValid);
  Display::DisplayI("Number of invalid cases", analysis.nInvalid);
  Display::DisplayD("Weighted number of all cases", analysis.wAll);
  Display::DisplayD("Weighted number of valid cases", analysis.wValid);
  Display::DisplayD("Weighted number of invalid cases", analysis.wInvalid);
  Display::DisplayD("Alpha level", analysis.alpha);
  Display::DisplayD("IDF Normal value of adjusted confidence level", analysis.zCrit);
  Display::DisplayB("Need aggregation flag", analysis.needAggregation);
  Display::DisplayB("Need success aggregation flag", analysis.needSuccessAggregation);
  Display::DisplayB("Need select aggregation flag", analysis.needSelectAggregation);
  Display::DisplayB("Bootstrapping flag", analysis.bootstrapping);
  Display::DisplayB("Multiple Imputation flag", analysis.multipleImputation);
  Display::DisplayI("Pooling Variable Index", analysis.poolingVarIndex);
  Display::DisplayI("Pooling Sample Index", analysis.poolingSampleIndex);
  if (analysis.userSplitIndices.empty()) {
    line("User Split Indices are not defined");
  } else {
    Display::DisplayIV("User Split Indices", analysis.userSplitIndices);
  }
}

}  // namespace

void dumpValue(const VarValue& value) {
  framed("VarValue", [&] {
    if (value.isString) {
      Display::DisplayS("String Value", value.stringValue);
    } else {
      Display::DisplayD("Numeric Value", value.numericValue);
    }
  });
}

void dumpSpecification(const PRPValidSpecs& specs) {
  banner();
  framed("PRPValidSpecs", [&] {
    if (specs.variableSpecs() == nullptr) line("Variable valid specifications are not defined");
    Display::DisplayS("Model Type", modelText(specs.modelType()));
    Display::DisplayIV("Vector of Test Variable indices", specs.testVarIndices());
    dumpElements("Test Variable Vector Info Elements", specs.testVarInfo());
    Display::DisplayIV("Second Vector of Test Variable indices", specs.secondVarIndices());
    dumpElements("Second Variable Vector Info Elements", specs.secondVarInfo());
    Display::DisplayD("Test Value", specs.testValue());
    Display::DisplayB("Flag for Ordered Pair option", specs.orderedPairs());
    Display::DisplayI("Group Variable Index", specs.groupVarIndex());
    if (specs.groupVarIndex() >= 0) {
      framed("Group Info Element", [&] { dumpElement(specs.groupInfo()); });
    } else {
      line("Group Info Element not defined");
    }
    Display::DisplayB("Scope Analysis", specs.scopeAnalysis());
    Display::DisplayB("User Missing Included", specs.userMissingIncluded());
    framed("Success Info Element", [&] { dumpElement(specs.successInfo()); });
    Display::DisplayB("Ignore Case indicator", specs.ignoreCase());
    Display::DisplayB("Print Upper Case indicator", specs.printUpperCase());
    Display::DisplayB("Print Category Order", specs.printCategoryOrder());
    Display::DisplayD("Confidence Interval Level as percent", specs.confidenceLevel());
    Display::DisplayBV("Test Type Option flags", specs.testTypes());
    Display::DisplayBV("CI Type Option flags", specs.ciTypes());
  });
}

void dumpAlgorithm(const PRPAlgorithm& analysis) {
  banner();
  framed("PRPAlgorithm", [&] {
    dumpFields(analysis);
    for (const auto& cats : analysis.testVarCats) dumpCats(*cats);
    for (const auto& cats : analysis.secondVarCats) dumpCats(*cats);
    if (analysis.groupCats) dumpCats(*analysis.groupCats);
    for (const PropZOneSamp& record : analysis.oneSampleRecords) dumpRecord(record);
    for (const PropZPairSamp& record : analysis.pairedRecords) dumpRecord(record);
    for (const PropZIndSamp& record : analysis.independentRecords) dumpRecord(record);
  });
}

}  // namespace proportions
