/// The proportions, differences and standard errors of a run, gathered over samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "workbench/output/document.h"
#include "workbench/results/result_rows.h"
#include "workbench/results/shown_subject.h"

namespace workbench {

/// Something that a command estimates in a split group of the user's.
struct SampledResult {
  std::vector<LabelData> split;  ///< values of the user's split variables
  ShownSubject about;
  Quantity quantity = Quantity::kProportion;
  std::vector<std::string> variables;  ///< names of those analysed
  std::vector<double> values;          ///< of each sample; kSystemMissing where there is none
};

/// What a run shows of each sample number.
class SampledResults {
 public:
  /// Room for that many values of each result.
  explicit SampledResults(size_t slots) : slots_(slots) {}

  /// Makes room for that many values of each result; those there stay.
  void makeRoom(size_t slots);

  /// Takes what a run shows whose split groups share tables and whose innermost split variable is
  /// the sample number. `slotOf` says where a sample's values go; nothing: they are passed over.
  void add(const DocumentProcedure& procedure,
           const std::function<std::optional<size_t>(int64_t sample)>& slotOf);

  /// In the order in which they were first shown.
  const std::vector<SampledResult>& results() const { return results_; }
  /// The same result in another gathering; null when it is not there.
  const SampledResult* find(const SampledResult& result) const;
  /// The split variables of the user, as dimensions.
  const std::vector<LabelData>& splitDimensions() const { return splitDimensions_; }

 private:
  void addTable(const Table& table, const std::function<std::optional<size_t>(int64_t)>& slotOf);
  void store(const ResultRows& rows, size_t row, size_t slot, SampledResult wanted);

  size_t slots_;
  std::vector<SampledResult> results_;
  std::unordered_map<std::string, size_t> byKey_;
  PairLabels pairs_;
  std::vector<LabelData> splitDimensions_;
};

}  // namespace workbench
