/// Draws bootstrap samples in batches, the next ones while the last is worked on.
#pragma once

#include <cstdint>
#include <deque>
#include <future>
#include <optional>
#include <vector>

#include "workbench/bootstrap/marginal_cases.h"
#include "workbench/bootstrap/resampled_dataset.h"
#include "workbench/bootstrap/sampled_cases.h"
#include "workbench/resampling/multinomial.h"

namespace workbench {

/// Each sample of each group has a stream of random numbers of its own, so that it matters neither
/// who draws it nor when.
class SampleDrawer {
 public:
  struct Batch {
    int64_t first;    ///< number of its first sample, from 1
    Samples samples;  ///< weights of the rows of `marginal`
  };

  /// Begins to draw. Borrows the cases, which are those that `marginal` adds up.
  SampleDrawer(const SampledCases& cases, const MarginalCases& marginal, uint64_t seed,
               int64_t samples);
  SampleDrawer(const SampleDrawer&) = delete;
  SampleDrawer& operator=(const SampleDrawer&) = delete;

  /// Nothing after the last one.
  std::optional<Batch> next();

 private:
  void drawAnother();
  Samples draw(int64_t first, int64_t last) const;
  void drawBlock(size_t group, int64_t first, int64_t last,
                 std::vector<SampleWeights>& samples) const;

  const SampledCases& cases_;
  const MarginalCases& marginal_;
  std::vector<Multinomial> distributions_;  ///< by group
  const uint64_t seed_;
  const int64_t samples_;
  int64_t together_;                        ///< samples that one processor draws side by side
  int64_t batchSize_;                       ///< samples
  int64_t first_ = 1;                       ///< sample of the next batch
  std::deque<std::future<Samples>> drawn_;  ///< that batch and those after it
};

}  // namespace workbench
