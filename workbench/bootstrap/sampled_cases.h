/// The cases that bootstrap samples are drawn from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// The different cases of a user's split group: rows of the variables' observations with the weight
/// that the analysis uses, and how many cases are alike. Rows ascend by the variables in their
/// order, missing values before all numbers, texts by their bytes, then by the weight, dropped
/// cases first: an order that no file format, reading order or locale changes.
struct CaseGroup {
  std::vector<SplitValue> split;
  size_t rows = 0;
  std::vector<std::vector<double>> columns;  ///< of each variable `words` per row
  std::vector<double> weights;               ///< rounded; kSystemMissing for dropped cases
  std::vector<int64_t> counts;
};

struct SampledCases {
  std::vector<VarIndex> variables;
  std::vector<int32_t> words;  ///< of an observation, by variable
  std::vector<CaseGroup> groups;

  /// Of all groups.
  size_t rows() const;
};

/// Reads the cases of the data set, which has to be ready for a command on these variables. Throws
/// DataError when they cannot be read to the end or take more than `memoryLimit` bytes.
SampledCases sampledCases(ActiveDataset& dataset, const std::vector<VarIndex>& variables,
                          size_t memoryLimit);

}  // namespace workbench
