#include "module/paired/pairs.h"

#include <algorithm>

#include "module/driver/algorithm.h"

namespace proportions {
namespace {

class PairList {
 public:
  explicit PairList(const PRPAlgorithm& analysis) : analysis_(analysis) {}

  void add(int32_t first, int32_t second) {
    if (analysis_.testVarIndices[first] == analysis_.secondVariable(second)) return;
    PropZPairSamp record;
    record.pairIndex = static_cast<int32_t>(records_.size());
    record.firstLocalVarIndex = first;
    record.secondLocalVarIndex = second;
    records_.push_back(record);
  }
  std::vector<PropZPairSamp> take() { return std::move(records_); }

 private:
  const PRPAlgorithm& analysis_;
  std::vector<PropZPairSamp> records_;
};

}  // namespace

std::vector<PropZPairSamp> formPairs(const PRPAlgorithm& analysis) {
  PairList pairs(analysis);
  const auto nFirst = static_cast<int32_t>(analysis.testVarIndices.size());
  const auto nSecond = static_cast<int32_t>(analysis.secondVarIndices.size());
  if (nSecond == 0) {
    for (int32_t i = 0; i < nFirst; ++i) {
      for (int32_t j = i + 1; j < nFirst; ++j) pairs.add(i, j);
    }
  } else if (analysis.orderedPair) {
    for (int32_t k = 0; k < std::min(nFirst, nSecond); ++k) pairs.add(k, k);
  } else {
    for (int32_t i = 0; i < nFirst; ++i) {
      for (int32_t j = 0; j < nSecond; ++j) pairs.add(i, j);
    }
  }
  return pairs.take();
}

}  // namespace proportions
