/// Cases added up to what results depend on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "workbench/bootstrap/resampled_dataset.h"
#include "workbench/bootstrap/sampled_cases.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/parser/command_facts.h"

namespace workbench {

/// Sets of variables, as positions in SampledCases::variables in ascending order: what the results
/// of a group depend on.
using DependenceSets = std::set<std::vector<size_t>>;

/// Results that depend on few variables each, a proportion on one, a pair on two, come from the
/// joint weights of those alone. Rows for every combination of their values, all other variables
/// missing, give the same results as the rows of all different cases, and are often far fewer.
class MarginalCases {
 public:
  /// `sets` has those of each group. Where rows would hardly be fewer, or would not give the same
  /// to the last bit, the cases stay as they are. Borrows the cases.
  MarginalCases(const SampledCases& cases, const std::vector<DependenceSets>& sets,
                ActiveDataset& dataset, const CommandFacts& facts);

  /// The rows that stand for the cases.
  const SampledCases& cases() const { return marginal_ ? *marginal_ : all_; }
  /// Adds to `samples` what those of a group weigh in samples in which its rows of all cases weigh
  /// `all`; quickest for kLanes samples together.
  void weights(size_t group, std::vector<SampleWeights> all,
               std::vector<SampleWeights>& samples) const;
  static constexpr size_t kLanes = 8;

 private:
  using Lanes = std::array<double, kLanes>;
  /// For each row of all cases one place among the marginal rows in every set, side by side.
  struct Places {
    size_t sets;
    std::vector<uint32_t> places;
  };

  std::vector<Lanes> addUp(size_t group, const SampleWeights* samples, size_t count) const;

  const SampledCases& all_;
  std::optional<SampledCases> marginal_;
  std::vector<Places> groups_;
};

}  // namespace workbench
