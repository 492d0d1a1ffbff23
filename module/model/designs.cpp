#include "module/model/designs.h"

#include <algorithm>

namespace proportions {
namespace {

template <typename Record>
std::vector<Record> recordPerVariable(const PRPAlgorithm& analysis) {
  std::vector<Record> records(analysis.settings.testVarIndices.size());
  for (size_t i = 0; i < records.size(); ++i) records[i].localVarIndex = static_cast<int32_t>(i);
  return records;
}

class PairList {
 public:
  explicit PairList(const CommandSettings& settings) : settings_(settings) {}

  void add(int32_t first, int32_t second) {
    const VarIndex firstIndex = settings_.testVarIndices[static_cast<size_t>(first)];
    if (firstIndex == settings_.secondVariable(second)) return;
    PropZPairSamp record;
    record.pairIndex = static_cast<int32_t>(records_.size());
    record.firstLocalVarIndex = first;
    record.secondLocalVarIndex = second;
    records_.push_back(record);
  }
  std::vector<PropZPairSamp> take() { return std::move(records_); }

 private:
  const CommandSettings& settings_;
  std::vector<PropZPairSamp> records_;
};

}  // namespace

void makeOneSampleRecords(PRPAlgorithm& analysis) {
  analysis.oneSampleRecords = recordPerVariable<PropZOneSamp>(analysis);
}

void makePairedRecords(PRPAlgorithm& analysis) {
  const CommandSettings& settings = analysis.settings;
  PairList pairs(settings);
  const auto nFirst = static_cast<int32_t>(settings.testVarIndices.size());
  const auto nSecond = static_cast<int32_t>(settings.secondVarIndices.size());
  if (nSecond == 0) {
    for (int32_t i = 0; i < nFirst; ++i) {
      for (int32_t j = i + 1; j < nFirst; ++j) pairs.add(i, j);
    }
  } else if (settings.orderedPair) {
    for (int32_t k = 0; k < std::min(nFirst, nSecond); ++k) pairs.add(k, k);
  } else {
    for (int32_t i = 0; i < nFirst; ++i) {
      for (int32_t j = 0; j < nSecond; ++j) pairs.add(i, j);
    }
  }
  analysis.pairedRecords = pairs.take();
}

void makeIndependentRecords(PRPAlgorithm& analysis) {
  analysis.independentRecords = recordPerVariable<PropZIndSamp>(analysis);
}

const DesignRow* findDesign(Design code) {
  const auto row = std::find_if(kDesigns.begin(), kDesigns.end(),
                                [code](const DesignRow& design) { return design.code == code; });
  return row == kDesigns.end() ? nullptr : &*row;
}

}  // namespace proportions
