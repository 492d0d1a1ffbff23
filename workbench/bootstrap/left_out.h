/// Leaving out one case at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "workbench/bootstrap/marginal_cases.h"
#include "workbench/bootstrap/resampled_dataset.h"
#include "workbench/bootstrap/sampled_cases.h"

namespace workbench {

/// Cases that are alike in all that a result depends on: leaving out any of them gives the same.
struct LeftOutKind {
  size_t sample;  ///< number of the sample, from 1, in which one of them is left out
  double cases;   ///< how many there are, weighted
};

/// Chooses, group by group, the cases to leave out for results that depend on certain variables.
class LeftOutCases {
 public:
  explicit LeftOutCases(const SampledCases& cases);

  /// The kinds of cases of a group for a result that depends on the variables at these positions
  /// of SampledCases::variables.
  const std::vector<LeftOutKind>& kinds(size_t group, const std::vector<size_t>& positions);

  /// How many rows all samples chosen so far have together.
  double work() const;
  /// The most samples that a group has.
  size_t samples() const;
  /// Samples `first` to before `last` of every group, as far as it has them, for ResampledDataset
  /// with the rows of `marginal`.
  Samples samples(const MarginalCases& marginal, size_t first, size_t last) const;

 private:
  size_t sampleOf(size_t group, size_t row);

  const SampledCases& cases_;
  std::vector<std::vector<size_t>> rows_;  // by group: the row of each sample
  std::vector<std::map<size_t, size_t>> sampleOfRow_;
  std::vector<std::map<std::vector<size_t>, std::vector<LeftOutKind>>> known_;
};

}  // namespace workbench
