#include "workbench/bootstrap/sample_drawer.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace workbench {
namespace {

/// Weights of all batches that are held at a time, and numbers of cases in those being drawn.
constexpr int64_t kMostNumbers = 16'000'000;
constexpr int64_t kMostSamplesInBatch = 100;

int64_t rowsOf(const SampledCases& cases) {
  return std::max<int64_t>(1, static_cast<int64_t>(cases.rows()));
}

}  // namespace

SampleDrawer::SampleDrawer(const SampledCases& cases, const MarginalCases& marginal, uint64_t seed,
                           int64_t samples)
    : cases_(cases), marginal_(marginal), seed_(seed), samples_(samples) {
  for (const CaseGroup& group : cases.groups) distributions_.emplace_back(group.counts);
  // One more than processors, for one may wait for an earlier one.
  const int64_t mostBatches = 1 + std::max<int64_t>(1, std::thread::hardware_concurrency());
  const int64_t mostDrawn = std::max<int64_t>(1, kMostNumbers / rowsOf(cases));
  const int64_t batches = std::min(mostBatches, mostDrawn);
  together_ = std::min<int64_t>(mostDrawn / batches, MarginalCases::kLanes);
  // With the batch that is worked on.
  batchSize_ = std::clamp<int64_t>(kMostNumbers / (batches + 1) / rowsOf(marginal.cases()), 1,
                                   kMostSamplesInBatch);
  for (int64_t i = 0; i < batches; ++i) drawAnother();
}

std::optional<SampleDrawer::Batch> SampleDrawer::next() {
  if (drawn_.empty()) return std::nullopt;
  Batch batch{first_, drawn_.front().get()};
  drawn_.pop_front();
  first_ += batchSize_;
  drawAnother();
  return batch;
}

void SampleDrawer::drawAnother() {
  const int64_t first = first_ + batchSize_ * static_cast<int64_t>(drawn_.size());
  if (first > samples_) return;
  drawn_.push_back(std::async(std::launch::async, &SampleDrawer::draw, this, first,
                              std::min(first + batchSize_, samples_ + 1)));
}

/// Samples `first` to before `last` of every group.
Samples SampleDrawer::draw(int64_t first, int64_t last) const {
  Samples samples(cases_.groups.size());
  for (size_t group = 0; group < samples.size(); ++group) {
    for (int64_t from = first; from < last; from += together_) {
      drawBlock(group, from, std::min(from + together_, last), samples[group]);
    }
  }
  return samples;
}

void SampleDrawer::drawBlock(size_t group, int64_t first, int64_t last,
                             std::vector<SampleWeights>& samples) const {
  std::vector<RandomStream> streams;
  for (int64_t i = first; i < last; ++i) {
    streams.emplace_back(seed_, group, static_cast<uint64_t>(i));
  }
  std::vector<std::vector<int64_t>> drawn;
  distributions_[group].draw(streams, drawn);
  std::vector<SampleWeights> weights;
  for (const auto& sample : drawn) weights.push_back(weightsOf(cases_.groups[group], sample));
  marginal_.weights(group, std::move(weights), samples);
}

}  // namespace workbench
