/// The cases of one command: where they stay between its passes.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "workbench/dataset/case_feed.h"
#include "workbench/dataset/case_source.h"

namespace workbench {

class EngineHolder;

/// What is to be read, and what it is for.
struct CasePlan {
  CaseRequest request;               ///< the weight, if any, is its last column
  std::vector<VarIndex> variables;   ///< of the columns, the weight left out
  std::vector<size_t> split;         ///< positions of the split variables, outermost first
  const Variable* weight = nullptr;  ///< the weight's entry; null: unweighted
};

/// Cases that can be handed over any number of times. Its feeds must not outlive it.
class CaseStore {
 public:
  virtual ~CaseStore() = default;
  CaseStore() = default;
  CaseStore(const CaseStore&) = delete;
  CaseStore& operator=(const CaseStore&) = delete;
  /// Exact width of the string variable at a position of the plan; 0 for all others.
  virtual int32_t width(size_t column) const = 0;
  /// Rows that a feed delivers.
  virtual int64_t rows() const = 0;
  virtual std::unique_ptr<CaseFeed> openFeed(ColumnViews views, std::shared_ptr<SplitCursor> cursor,
                                             FeedObserver& observer) = 0;
};

/// Keeps what the source gave for the plan's request: in memory, or, when that takes more than the
/// plan allows, in a table of the engine that may spill to the working folder. The source may be
/// read again. Throws DataError, EngineError or Interrupted.
std::unique_ptr<CaseStore> keepCases(CodedCases cases, CaseSource& source, const CasePlan& plan,
                                     EngineHolder& workspace);

/// The two kinds of stores. The second one reads the cases again; `cases` is how many there were,
/// -1 when that is not known.
std::unique_ptr<CaseStore> makeCodedStore(CodedCases cases, const CasePlan& plan);
std::unique_ptr<CaseStore> makeSpilledStore(CaseSource& source, const CasePlan& plan,
                                            const std::vector<ValueKind>& kinds, int64_t cases,
                                            EngineHolder& workspace);

}  // namespace workbench
