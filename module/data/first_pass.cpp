#include "module/data/first_pass.h"

#include <algorithm>

#include "module/data/case_reader.h"
#include "module/model/designs.h"
#include "module/model/success_rule.h"
#include "module/model/texts.h"

namespace proportions {
namespace {

std::unique_ptr<VarCatInfo> makeCats(const PRPAlgorithm& analysis, VarIndex index) {
  auto cats = std::make_unique<VarCatInfo>();
  cats->varIndex = index;
  cats->isString = analysis.dataSource->GetVariable(index).GetFormatEx().type == kStringFormatType;
  return cats;
}

void initialiseStore(const PRPAlgorithm& analysis, PRPAggregation& store) {
  store.first.resize(analysis.settings.testVarIndices.size());
  store.second.resize(analysis.settings.secondVarIndices.size());
  if (!analysis.userSplitIndices.empty()) {
    store.keyWidths = ObsVecMap::MakeKeySpec(*analysis.dataSource, analysis.userSplitIndices);
    store.splitMap = std::make_unique<ObsVecMap>(store.keyWidths, true);
  }
  store.initialised = true;
}

void setUpGroup(PRPAlgorithm& analysis) {
  const CommandSettings& settings = analysis.settings;
  for (const VarIndex index : settings.testVarIndices) {
    analysis.testVarCats.push_back(makeCats(analysis, index));
  }
  for (const VarIndex index : settings.secondVarIndices) {
    analysis.secondVarCats.push_back(makeCats(analysis, index));
  }
  if (settings.groupVarIndex >= 0) analysis.groupCats = makeCats(analysis, settings.groupVarIndex);
  if (analysis.aggregation != nullptr && !analysis.aggregation->initialised) {
    initialiseStore(analysis, *analysis.aggregation);
  }
  if (const DesignRow* design = findDesign(settings.modelType)) design->makeRecords(analysis);
}

/// The group's resample or imputation number. False, with an error, when it is missing or negative.
bool readSampleNumber(PRPAlgorithm& analysis, const Case& data) {
  const double value = *data.Obs(analysis.poolingVarIndex);
  const bool valid = !IsSystemMissing(value) && value >= 0.0;
  // A number that no integer can hold is not a sample's; 2^31 - 1 stands for it: some resample.
  analysis.poolingSampleIndex =
      valid ? static_cast<int32_t>(std::min(value + 0.5, 2147483647.0)) : -1;
  if (!valid) {
    analysis.messages->GenericError(analysis.bootstrapping ? texts::kInvalidBootstrapIndex
                                                           : texts::kInvalidImputationIndex);
  }
  return valid;
}

void readSplitKey(PRPAlgorithm& analysis, const Case& data) {
  const PRPAggregation& store = *analysis.aggregation;
  std::vector<double> key(static_cast<size_t>(store.splitMap->CellSize() - 1));
  auto word = key.begin();
  for (const VarIndex index : analysis.userSplitIndices) {
    const int32_t words = ObsLength(analysis.dataSource->GetVariable(index).GetType());
    word = std::copy_n(data.Obs(index), words, word);
  }
  analysis.splitKey = std::move(key);
}

void setMidPoint(VarCatInfo& cats) {
  if (!cats.isString && cats.hasValidValue) {
    cats.midPoint = (cats.maxValue + cats.minValue) * 0.5;
  }
}

/// What labels this group's success rows: an empty text for strings whose rule has none, and the
/// missing value for numbers likewise.
VarValue labelValue(const VarCatInfo& cats, const SuccessRuleRow& rule) {
  if (cats.isString) return VarValue::text(rule.text == nullptr ? std::string() : cats.*rule.text);
  return VarValue::number(rule.number == nullptr ? kSystemMissing : cats.*rule.number);
}

/// True for the groups whose values label rows: those of the base data.
bool gathers(const PRPAlgorithm& analysis, bool needed) {
  return needed && analysis.aggregation != nullptr && analysis.poolingSampleIndex == 0;
}

void setMidPoints(const std::vector<std::unique_ptr<VarCatInfo>>& list) {
  for (const auto& cats : list) setMidPoint(*cats);
}

/// A numeric FIRST of the first list gathers the missing value, one of the second list its minimum:
/// rows of shared tables depend on this difference.
void gatherFirstList(const PRPAlgorithm& analysis) {
  for (size_t i = 0; i < analysis.testVarCats.size(); ++i) {
    const VarCatInfo& cats = *analysis.testVarCats[i];
    const SuccessRule rule = analysis.settings.testVarInfo[i].rule;
    const bool lowestNumber = rule == SuccessRule::kFirst && !cats.isString;
    const SuccessRuleRow* row = findRule(rule);
    analysis.aggregation->first[i].insert(
        lowestNumber || row == nullptr ? VarValue::number(kSystemMissing) : labelValue(cats, *row));
  }
}

void gatherSecondList(const PRPAlgorithm& analysis) {
  for (size_t i = 0; i < analysis.secondVarCats.size(); ++i) {
    const SuccessRuleRow* row = findRule(analysis.settings.secondVarInfo[i].rule);
    analysis.aggregation->second[i].insert(row == nullptr
                                               ? VarValue::number(kSystemMissing)
                                               : labelValue(*analysis.secondVarCats[i], *row));
  }
}

void gatherMidPoint(const PRPAlgorithm& analysis) {
  const VarCatInfo& cats = *analysis.groupCats;
  const bool byMidPoint =
      !cats.isString && analysis.settings.groupInfo.rule == SuccessRule::kMidpoint;
  analysis.aggregation->midPoints.insert(
      VarValue::number(byMidPoint ? cats.midPoint : kSystemMissing));
}

void finishFirstPass(PRPAlgorithm& analysis) {
  analysis.initialDataPass = false;
  if (analysis.nValid > 0) {
    setMidPoints(analysis.testVarCats);
    setMidPoints(analysis.secondVarCats);
    if (gathers(analysis, analysis.needSuccessAggregation)) {
      gatherFirstList(analysis);
      gatherSecondList(analysis);
    }
    if (analysis.groupCats) {
      setMidPoint(*analysis.groupCats);
      if (gathers(analysis, analysis.needSelectAggregation)) gatherMidPoint(analysis);
    }
    return;
  }
  analysis.splitFile ? analysis.inputMessages->NoValidCasesSplit()
                     : analysis.inputMessages->NoValidCases();
  analysis.goodData = false;
}

}  // namespace

bool readGroup(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  CaseReader reader(analysis, iterator);
  UsedCase used;
  if (!reader.nextUsedCase(used)) return analysis.nAll != 0;
  bool valid = true;
  if (analysis.poolingVarIndex >= 0 && analysis.aggregation != nullptr) {
    valid = readSampleNumber(analysis, *used.data);
    if (!analysis.userSplitIndices.empty() && analysis.splitKey.empty()) {
      readSplitKey(analysis, *used.data);
    }
  }
  while (reader.nextUsedCase(used)) {
  }
  return valid;
}

bool firstPass(PRPAlgorithm& analysis, ProcDSIterator& iterator, PRPAggregation& store) {
  if (analysis.needAggregation) analysis.aggregation = &store;
  setUpGroup(analysis);
  if (!readGroup(analysis, iterator)) return false;
  finishFirstPass(analysis);
  return true;
}

}  // namespace proportions
