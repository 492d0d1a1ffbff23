/// How cases reach a procedure: chunks of columns, and what a feed shares with its data set.
#pragma once

#include <cstdint>
#include <exception>
#include <vector>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// No chunk holds more cases.
inline constexpr int64_t kMostChunkCases = 4096;

/// A chunk of rows that may stand for several identical cases each. The pointers that are null say
/// "as in the chunk": a row is one case, and its weight is the raw weight of that case.
struct CountedChunk : CaseChunk {
  const double* caseCounts = nullptr;  ///< cases that each row stands for
  const double* rawWeights = nullptr;  ///< sum of those cases' raw weights that are not missing
};

/// Views of all variables of a data set; those that were not read show a missing value.
class ColumnViews {
 public:
  explicit ColumnViews(int32_t variableCount);
  ColumnView& operator[](VarIndex variable) { return views_[static_cast<size_t>(variable)]; }
  const ColumnView* data() const { return views_.data(); }
  /// Makes a variable that was not read look missing.
  void showMissing(const ActiveDataset& dataset, VarIndex variable);

 private:
  std::vector<ColumnView> views_;
};

/// Where the newest feed stands: the values of the group that it delivered last.
struct SplitCursor {
  const std::vector<SplitValue>* values = nullptr;
  std::vector<SplitValue> own;  ///< for feeds whose values do not outlive them
};

/// What a feed reports to the data set that opened it.
class FeedObserver {
 public:
  virtual ~FeedObserver() = default;
  /// Asked before every chunk; false ends the feed for good.
  virtual bool mayContinue() = 0;
  /// All cases were delivered.
  virtual void passComplete(int64_t cases) = 0;
  /// The cases cannot be read to the end.
  virtual void passFailed(const std::exception& error) = 0;
};

}  // namespace workbench
