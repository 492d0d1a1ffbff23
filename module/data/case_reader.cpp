#include "module/data/case_reader.h"

#include <cmath>
#include <limits>

namespace proportions {
namespace {

/// Counters stop at the largest number they hold: 2^31 cases and more must not wrap to "no case".
void countUp(int32_t& counter) {
  if (counter < std::numeric_limits<int32_t>::max()) ++counter;
}

}  // namespace

std::optional<double> roundedWeight(double weight) {
  if (IsSystemMissing(weight)) return std::nullopt;
  if (!(weight >= 0.5)) return std::nullopt;  // a NaN too
  return std::floor(weight + 0.5);
}

CaseReader::CaseReader(PRPAlgorithm& analysis, ProcDSIterator& iterator)
    : analysis_(analysis), iterator_(iterator), values_(analysis) {
  if (analysis.initialDataPass) {
    collector_.emplace(values_);
  } else {
    classifier_.emplace(values_, analysis.settings.scopeAnalysis);
  }
}

/// True when the case is used: always while the extremes are collected.
inline bool CaseReader::takeValues(const Case& data, UsedCase& used) {
  if (classifier_) return classifier_->classifyCase(data, used.first, used.second, used.group);
  collector_->collect(data);
  return true;
}

bool CaseReader::useCase(const Case& data, UsedCase& used) {
  const std::optional<double> weight = roundedWeight(iterator_.Weight());
  used.weight = weight.value_or(0.0);
  used.data = &data;
  analysis_.wAll += used.weight;
  if (weight && values_.caseIsComplete(data) && takeValues(data, used)) {
    countUp(analysis_.nValid);
    analysis_.wValid += used.weight;
    return true;
  }
  countUp(analysis_.nInvalid);
  analysis_.wInvalid += used.weight;
  return false;
}

bool CaseReader::nextUsedCase(UsedCase& used) {
  used.weight = 1.0;
  const Case* data = iterator_.NextCase();
  if (data != nullptr && analysis_.nAll == 0 && analysis_.splitFile) {
    analysis_.procedure->SplitChange();
  }
  for (; data != nullptr; data = iterator_.NextCase()) {
    if (iterator_.SplitGroupEnd()) return false;
    countUp(analysis_.nAll);
    if (useCase(*data, used)) return true;
  }
  return false;
}

}  // namespace proportions
