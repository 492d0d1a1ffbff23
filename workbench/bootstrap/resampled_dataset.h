/// Bootstrap samples as split groups of a data set.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "workbench/bootstrap/sampled_cases.h"
#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// Weights of one sample of a group: what the row's cases that were drawn weigh together, 0 for
/// rows that were not drawn or whose cases their weight drops.
using SampleWeights = std::vector<double>;
/// Samples of each group.
using Samples = std::vector<std::vector<SampleWeights>>;

/// A data set over another one with one variable more, the sample, as innermost split variable.
/// Within each of the user's split groups sample 0 is the data as they are; the samples given are
/// numbered from 1. Groups always share tables. Borrows all that it is made of.
class ResampledDataset final : public ActiveDataset {
 public:
  ResampledDataset(ActiveDataset& dataset, const SampledCases& cases, const Samples& samples);

  int32_t variableCount() const override { return sampleIndex_ + 1; }
  const Variable& variable(VarIndex index) override {
    return index == sampleIndex_ ? sample_ : dataset_.variable(index);
  }
  const Variable& declaration(VarIndex index) const override {
    return index == sampleIndex_ ? sample_ : dataset_.declaration(index);
  }
  VarIndex find(std::string_view name) const override {
    return name == kSampleVariable ? sampleIndex_ : dataset_.find(name);
  }
  const std::vector<VarIndex>& splitVariables() const override { return split_; }
  VarIndex weightVariable() const override { return dataset_.weightVariable(); }
  bool separateSplitLayout() const override { return false; }
  std::unique_ptr<CaseFeed> openFeed() override;
  const std::vector<SplitValue>& currentSplit() const override { return currentSplit_; }
  bool failed() const override { return dataset_.failed(); }
  const std::string& failure() const override { return dataset_.failure(); }
  int64_t caseCount() const override { return dataset_.caseCount(); }

 private:
  class Feed;

  ActiveDataset& dataset_;
  const SampledCases& cases_;
  const Samples& samples_;
  std::vector<SampleWeights> asTheyAre_;  // by group
  VarIndex sampleIndex_;
  Variable sample_;
  std::vector<VarIndex> split_;
  std::vector<SplitValue> currentSplit_;
};

/// What the rows of a group weigh together when `drawn` cases of each were drawn.
SampleWeights weightsOf(const CaseGroup& group, const std::vector<int64_t>& drawn);

}  // namespace workbench
