/// The cases of one command: how they are read, and where they stay between its passes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/dataset/case_reader.h"
#include "workbench/dataset/case_table.h"
#include "workbench/engine/source.h"

namespace workbench {

/// When identical cases are counted by the data engine and handed over once.
enum class CollapseMode { kAuto, kAlways, kNever };

/// What is to be read.
struct CasePlan {
  Source* source = nullptr;
  std::vector<ReadColumn> columns;  ///< the entries' widths are raised to what was found
  std::vector<VarIndex> split;      ///< each among the columns
  VarIndex weight = -1;             ///< negative: unweighted
  const Variable* weightEntry = nullptr;
  CollapseMode collapse = CollapseMode::kAuto;
  size_t memoryLimit = 0;  ///< bytes of cases to hold in memory
};

/// Cases that can be handed over any number of times. Its feeds must not outlive it.
class CaseStore {
 public:
  virtual ~CaseStore() = default;
  CaseStore() = default;
  CaseStore(const CaseStore&) = delete;
  CaseStore& operator=(const CaseStore&) = delete;
  /// Exact width of the string variable at a position of the plan.
  virtual int32_t width(size_t column) const = 0;
  virtual std::unique_ptr<CaseFeed> openFeed(ColumnViews views, std::shared_ptr<SplitCursor> cursor,
                                             FeedObserver& observer) = 0;
};

/// Reads the cases: counted by the engine when that is wanted and pays, else into memory, else into
/// a table of the engine that may spill to the working folder. Throws EngineError, DataError or
/// Interrupted.
std::unique_ptr<CaseStore> readCases(const CasePlan& plan);

/// Cases in a table of the engine.
std::unique_ptr<CaseStore> makeEngineStore(const CasePlan& plan);

/// The rows of the plan: SELECT list with the columns as c0, c1, ... and the weight as w.
std::string selectOf(const CasePlan& plan);

}  // namespace workbench
