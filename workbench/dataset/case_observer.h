/// Who looks at the cases on their way to a procedure.
#pragma once

#include <memory>

#include "workbench/dataset/case_feed.h"

namespace workbench {

/// Sees every chunk of one pass over the cases before the procedure does.
class CaseObserver {
 public:
  virtual ~CaseObserver() = default;
  /// Some cases of the split group that the data set is at.
  virtual void takeCases(const CountedChunk& chunk) = 0;
  /// The split group is over.
  virtual void endGroup() = 0;
  /// All cases were seen.
  virtual void endPass() = 0;
};

/// A feed that shows what it delivers to an observer first; both outlive it. All chunks of `feed`
/// are CountedChunks.
std::unique_ptr<CaseFeed> observed(std::unique_ptr<CaseFeed> feed, ActiveDataset& dataset,
                                   CaseObserver& observer);

}  // namespace workbench
