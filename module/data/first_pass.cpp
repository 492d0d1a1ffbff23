#include "module/data/first_pass.h"

#include <algorithm>

#include "module/data/case_reader.h"
#include "module/output/texts.h"
#include "module/paired/pairs.h"

namespace proportions {
namespace {

std::unique_ptr<VarCatInfo> makeCats(const PRPAlgorithm& analysis, VarIndex index) {
  auto cats = std::make_unique<VarCatInfo>();
  cats->varIndex = index;
  cats->isString = analysis.dataSource->GetVariable(index).GetFormatEx().type == kStringFormatType;
  return cats;
}

void initialiseStore(const PRPAlgorithm& analysis, PRPAggregation& store) {
  store.firstSets.resize(analysis.testVarIndices.size());
  store.secondSets.resize(analysis.secondVarIndices.size());
  if (!analysis.userSplitIndices.empty()) {
    store.keyWidths = ObsVecMap::MakeKeySpec(*analysis.dataSource, analysis.userSplitIndices);
    store.splitMap = std::make_unique<ObsVecMap>(store.keyWidths, true);
  }
  store.initialised = true;
}

template <typename Record>
std::vector<Record> recordPerVariable(size_t count) {
  std::vector<Record> records(count);
  for (size_t i = 0; i < count; ++i) records[i].localVarIndex = static_cast<int32_t>(i);
  return records;
}

void makeRecords(PRPAlgorithm& analysis) {
  const size_t count = analysis.testVarIndices.size();
  switch (analysis.modelType) {
    case kOneSample:
      analysis.oneSampleRecords = recordPerVariable<PropZOneSamp>(count);
      break;
    case kPairedSamples:
      analysis.pairedRecords = formPairs(analysis);
      break;
    case kIndependentSamples:
      analysis.independentRecords = recordPerVariable<PropZIndSamp>(count);
      break;
    default:
      break;
  }
}

void setUpGroup(PRPAlgorithm& analysis) {
  for (const VarIndex index : analysis.testVarIndices) {
    analysis.testVarCats.push_back(makeCats(analysis, index));
  }
  for (const VarIndex index : analysis.secondVarIndices) {
    analysis.secondVarCats.push_back(makeCats(analysis, index));
  }
  if (analysis.groupVarIndex >= 0) analysis.groupCats = makeCats(analysis, analysis.groupVarIndex);
  if (analysis.aggregation != nullptr && !analysis.aggregation->initialised) {
    initialiseStore(analysis, *analysis.aggregation);
  }
  makeRecords(analysis);
}

/// The group's resample or imputation number. False, with an error, when it is missing or negative.
bool readSampleNumber(PRPAlgorithm& analysis, const Case& data) {
  const double value = *data.Obs(analysis.poolingVarIndex);
  const bool valid = !isMissing(value) && value >= 0.0;
  // What no integer can hold is no number of a sample; 2^31 - 1 stands for it, as for any resample.
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
    const int32_t words = obsLength(analysis.dataSource->GetVariable(index).GetType());
    word = std::copy_n(data.Obs(index), words, word);
  }
  analysis.splitKey = std::move(key);
}

void setMidPoint(VarCatInfo& cats) {
  if (!cats.isString && cats.hasValidValue) {
    cats.midPoint = (cats.maxValue + cats.minValue) * 0.5;
  }
}

/// What labels this group's success rows. A numeric FIRST of the first list gathers the missing
/// value, one of the second list its minimum: rows of shared tables depend on this difference.
VarValue referenceValue(const VarCatInfo& cats, int32_t rule, bool secondList) {
  if (cats.isString) {
    if (rule == kFirst) return VarValue::text(cats.minString);
    return VarValue::text(rule == kLast ? cats.maxString : std::string());
  }
  if (rule == kLast) return VarValue::number(cats.maxValue);
  if (rule == kMidpoint) return VarValue::number(cats.midPoint);
  return VarValue::number(rule == kFirst && secondList ? cats.minValue : kSystemMissing);
}

/// True for the groups whose values label rows: those of the base data.
bool gathers(const PRPAlgorithm& analysis, bool needed) {
  return needed && analysis.aggregation != nullptr && analysis.poolingSampleIndex == 0;
}

void finishList(const std::vector<std::unique_ptr<VarCatInfo>>& cats,
                const std::vector<BinInfoElem>& info, std::vector<ValueSet>* sets,
                bool secondList) {
  for (size_t i = 0; i < cats.size(); ++i) {
    setMidPoint(*cats[i]);
    if (sets != nullptr) (*sets)[i].insert(referenceValue(*cats[i], info[i].rule, secondList));
  }
}

void finishGrouping(PRPAlgorithm& analysis) {
  if (!analysis.groupCats) return;
  VarCatInfo& cats = *analysis.groupCats;
  setMidPoint(cats);
  if (!gathers(analysis, analysis.needSelectAggregation)) return;
  const bool byMidPoint = !cats.isString && analysis.groupInfo.rule == kMidpoint;
  analysis.aggregation->groupSet.insert(
      VarValue::number(byMidPoint ? cats.midPoint : kSystemMissing));
}

bool finishFirstPass(PRPAlgorithm& analysis) {
  analysis.initialDataPass = false;
  if (analysis.nValid > 0) {
    const bool gather = gathers(analysis, analysis.needSuccessAggregation);
    PRPAggregation* store = analysis.aggregation;
    finishList(analysis.testVarCats, analysis.testVarInfo, gather ? &store->firstSets : nullptr,
               false);
    finishList(analysis.secondVarCats, analysis.secondVarInfo,
               gather ? &store->secondSets : nullptr, true);
    finishGrouping(analysis);
    return true;
  }
  analysis.splitFile ? analysis.inputMessages->NoValidCasesSplit()
                     : analysis.inputMessages->NoValidCases();
  analysis.goodData = false;
  return false;
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
