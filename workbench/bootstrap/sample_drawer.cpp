#include "workbench/bootstrap/sample_drawer.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

namespace workbench {
namespace {

/// Weights of a batch; two batches are held at a time.
constexpr int64_t kBatchWeights = 4'000'000;
constexpr int64_t kMostSamplesInBatch = 100;
/// Samples that are drawn side by side.
constexpr int64_t kBlock = 8;

int64_t batchSizeFor(const SampledCases& cases) {
  int64_t rows = 1;
  for (const CaseGroup& group : cases.groups) rows += static_cast<int64_t>(group.rows);
  return std::clamp<int64_t>(kBatchWeights / rows, 1, kMostSamplesInBatch);
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
  drawNext();
}

std::optional<SampleDrawer::Batch> SampleDrawer::next() {
  if (!drawn_.valid()) return std::nullopt;
  Batch batch{first_, drawn_.get()};
  first_ += batchSize_;
  drawNext();
  return batch;
}

void SampleDrawer::drawNext() {
  if (first_ > samples_) return;
  drawn_ = std::async(std::launch::async, &SampleDrawer::draw, this, first_,
                      std::min(first_ + batchSize_, samples_ + 1));
}

/// Samples `first` to before `last` of every group. The processors take block after block.
Samples SampleDrawer::draw(int64_t first, int64_t last) const {
  Samples samples(cases_.groups.size());
  for (auto& group : samples) group.resize(static_cast<size_t>(last - first));
  const int64_t blocks = (last - first + kBlock - 1) / kBlock;
  std::atomic<int64_t> taken = 0;
  const auto work = [&] {
    for (int64_t task = taken++; task < blocks * static_cast<int64_t>(samples.size());
         task = taken++) {
      const auto group = static_cast<size_t>(task / blocks);
      const int64_t from = first + task % blocks * kBlock;
      drawBlock(group, from, std::min(from + kBlock, last), samples[group].data() + (from - first));
    }
  };
  std::vector<std::jthread> others;
  for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) others.emplace_back(work);
  work();
  others.clear();
  return samples;
}

void SampleDrawer::drawBlock(size_t group, int64_t first, int64_t last,
                             SampleWeights* samples) const {
  std::vector<RandomStream> streams;
  for (int64_t i = first; i < last; ++i)
    streams.emplace_back(seed_, group, static_cast<uint64_t>(i));
  std::vector<std::vector<int64_t>> drawn;
  distributions_[group].draw(streams, drawn);
  for (const std::vector<int64_t>& sample : drawn) {
    *samples++ = marginal_.weights(group, weightsOf(cases_.groups[group], sample));
  }
}

}  // namespace workbench
