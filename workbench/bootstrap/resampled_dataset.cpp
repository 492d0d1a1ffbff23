#include "workbench/bootstrap/resampled_dataset.h"

#include <algorithm>

#include "workbench/dataset/case_feed.h"

namespace workbench {

SampleWeights weightsOf(const CaseGroup& group, const std::vector<int64_t>& drawn) {
  SampleWeights weights(group.rows);
  for (size_t row = 0; row < group.rows; ++row) {
    const double weight = group.weights[row];
    weights[row] = IsSystemMissing(weight) ? 0.0 : weight * static_cast<double>(drawn[row]);
  }
  return weights;
}

/// One sample after the other, a group's samples after each other.
class ResampledDataset::Feed final : public CaseFeed {
 public:
  explicit Feed(ResampledDataset& owner) : owner_(owner), views_(owner.variableCount()) {
    for (VarIndex index = 0; index < owner.sampleIndex_; ++index) {
      views_.showMissing(owner, index);
    }
    views_[owner.sampleIndex_] = {&number_, 0};
  }

  const CaseChunk* NextChunk() override {
    if (group_ == owner_.cases_.groups.size() || owner_.failed()) return nullptr;
    if (row_ == owner_.cases_.groups[group_].rows) return endSample();
    return cases();
  }

 private:
  const CaseChunk* cases() {
    const CaseGroup& group = owner_.cases_.groups[group_];
    if (row_ == 0) {
      number_ = static_cast<double>(sample_);
      owner_.currentSplit_ = group.split;
      owner_.currentSplit_.emplace_back(number_);
    }
    for (size_t i = 0; i < group.columns.size(); ++i) {
      const int32_t words = owner_.cases_.words[i];
      views_[owner_.cases_.variables[i]] = {
          group.columns[i].data() + row_ * static_cast<size_t>(words), words};
    }
    const SampleWeights& weights =
        sample_ == 0 ? owner_.asTheyAre_[group_] : owner_.samples_[group_][sample_ - 1];
    const size_t count = std::min(group.rows - row_, static_cast<size_t>(kMostChunkCases));
    chunk_ = CountedChunk();
    chunk_.columns = views_.data();
    chunk_.weights = weights.data() + row_;
    chunk_.count = static_cast<ptrdiff_t>(count);
    row_ += count;
    return &chunk_;
  }

  const CaseChunk* endSample() {
    row_ = 0;
    if (++sample_ > owner_.samples_[group_].size()) {
      sample_ = 0;
      ++group_;
    }
    chunk_.count = 0;
    chunk_.groupEnd = true;
    return &chunk_;
  }

  ResampledDataset& owner_;
  ColumnViews views_;
  CountedChunk chunk_;
  double number_ = 0;
  size_t group_ = 0;
  size_t sample_ = 0;
  size_t row_ = 0;
};

ResampledDataset::ResampledDataset(ActiveDataset& dataset, const SampledCases& cases,
                                   const Samples& samples)
    : dataset_(dataset),
      cases_(cases),
      samples_(samples),
      sampleIndex_(dataset.variableCount()),
      split_(dataset.splitVariables()) {
  sample_.name = kSampleVariable;
  split_.push_back(sampleIndex_);
  for (const CaseGroup& group : cases.groups) {
    asTheyAre_.push_back(weightsOf(group, group.counts));
  }
}

std::unique_ptr<CaseFeed> ResampledDataset::openFeed() { return std::make_unique<Feed>(*this); }

}  // namespace workbench
