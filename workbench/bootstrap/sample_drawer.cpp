#include "workbench/bootstrap/sample_drawer.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace workbench {
namespace {

/// Weights of all batches that are held at a time.
constexpr int64_t kMostWeights = 16'000'000;
constexpr int64_t kMostSamplesInBatch = 100;
constexpr auto kTogether = static_cast<int64_t>(MarginalCases::kLanes);

/// Batches that are drawn at a time: one more than processors, for one may wait for an earlier one.
int64_t drawnTogether() { return 1 + std::max<int64_t>(1, std::thread::hardware_concurrency()); }

int64_t batchSizeFor(const SampledCases& cases) {
  int64_t rows = 1;
  for (const CaseGroup& group : cases.groups) rows += static_cast<int64_t>(group.rows);
  const int64_t held = drawnTogether() + 1;  // with the one that is worked on
  return std::clamp<int64_t>(kMostWeights / held / rows, 1, kMostSamplesInBatch);
}

}  // namespace

SampleDrawer::SampleDrawer(const SampledCases& cases, const MarginalCases& marginal, uint64_t seed,
                           int64_t samples)
    : cases_(cases),
      marginal_(marginal),
      seed_(seed),
      samples_(samples),
      batchSize_(batchSizeFor(marginal.cases())) {
  for (const CaseGroup& group : cases.groups) distributions_.emplace_back(group.counts);
  for (int64_t i = 0; i < drawnTogether(); ++i) drawAnother();
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
    for (int64_t from = first; from < last; from += kTogether) {
      drawBlock(group, from, std::min(from + kTogether, last), samples[group]);
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
