/// The skeleton that all result tables share: a title, dimensions in their places, cells with
/// notes.
#pragma once

#include <functional>

#include "host/output.h"
#include "module/math/interval.h"
#include "module/math/method.h"
#include "module/math/p_values.h"

namespace proportions {

/// A text handed to the host's output as it stands.
BpString keyText(const char* text);

/// One of the command's tables, asked of the procedure's heading by its title, with its dimensions.
/// Asking again for the next variable or split group gives the same table.
class ResultTable {
 public:
  /// A table with "Variables" as its only row dimension. `missingNote` is the note of a cell whose
  /// value could not be computed.
  ResultTable(BpProcedure& procedure, const char* title, const char* missingNote);
  /// A table with a row dimension `inner` inside "Variables".
  ResultTable(BpProcedure& procedure, const char* title, const char* missingNote,
              const BpLabel& inner);

  BpDimension& inner() { return *inner_; }  ///< only of a table that has one
  BpDimension& variables() { return *variables_; }
  BpDimension& statistics() { return *statistics_; }

  /// Cells of the current row under "Statistics" or one of its groups.
  void addCount(BpGroup& group, const char* label, double value);
  void addStatistic(BpGroup& group, const char* label, double value);
  /// The same, with the table's note when the value is missing.
  void addNotedStatistic(BpGroup& group, const char* label, double value);
  BpGroup& statisticsGroup(const BpLabel& label);

  /// A row per interval or test: what stands in every row, then the row's own cells. `level` is the
  /// confidence level in percent, shown in the heading of the bounds.
  using AddCells = std::function<void()>;
  void addIntervals(const IntervalRows& rows, const char* heading, double level,
                    const AddCells& addShared);
  void addTests(const TestRows& rows, const AddCells& addShared);

 private:
  void addVariablesAndStatistics(int levelOfVariables);
  void addBounds(const char* heading, double level, const Bounds& bounds);
  void addTestCells(const MethodRow<TestResult>& row);

  BpProcedure& procedure_;
  const char* missingNote_;
  BpPivotTable& table_;
  BpDimension* inner_ = nullptr;
  BpDimension* variables_ = nullptr;
  BpDimension* statistics_ = nullptr;
};

}  // namespace proportions
