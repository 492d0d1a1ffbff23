#include "module/independent/tables.h"

#include "module/independent/significance.h"
#include "module/output/labels.h"
#include "module/output/result_table.h"

namespace proportions {
namespace {

TwoGroups groupsOf(const PropZIndSamp& record) {
  return {{record.numSuccesses1, record.numFailures1, record.numTrials1},
          {record.numSuccesses2, record.numFailures2, record.numTrials2}};
}

/// One side's row. A rule that makes no sides has no label, and then no row.
void addSide(ResultTable& table, const PRPAlgorithm& analysis, BpGroup& grouping, int side,
             const GroupCounts& counts, double proportion, double standardError) {
  const auto label = GroupSideLabel(analysis, side);
  if (!label) return;
  grouping.Category(*label);
  table.addCount(table.statistics(), texts::kSuccesses, counts.x);
  table.addCount(table.statistics(), texts::kTrials, counts.n);
  table.addStatistic(table.statistics(), texts::kProportion, proportion);
  table.addStatistic(table.statistics(), texts::kStandardError, standardError);
}

void addDifference(ResultTable& table, const PropZIndSamp& record) {
  table.addStatistic(table.statistics(), texts::kDifference, record.estimatedDifference);
  table.addStatistic(table.statistics(), texts::kStandardError, record._aseDiff1);
}

}  // namespace

void buildIndependentGroupStatisticsTable(PRPAlgorithm& analysis, const PropZIndSamp& record) {
  ResultTable table(analysis, texts::kGroupStatisticsTable, texts::kStatisticMissingGroup);
  BpDimension& grouping = table.addRowDimension(BpVariable(analysis.groupVarIndex, 2));
  table.addVariablesAndStatistics();
  addVariableRows(firstListVariable(analysis, record.localVarIndex), table.variables());
  if (!record.goodData) return;

  AddCutSideCategories(analysis, grouping);
  const TwoGroups groups = groupsOf(record);
  addSide(table, analysis, grouping, 0, groups.first, record.populationProportion1, record.ase1);
  addSide(table, analysis, grouping, 1, groups.second, record.populationProportion2, record.ase2);
}

void buildIndependentIntervalTable(PRPAlgorithm& analysis, const PropZIndSamp& record) {
  ResultTable table(analysis, texts::kIndependentIntervalTable, texts::kStatisticMissingGroup);
  BpDimension& types = table.addRowDimension(keyText(texts::kIntervalType));
  table.addVariablesAndStatistics();
  addVariableRows(firstListVariable(analysis, record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const IntervalRows rows = requestedIntervals(kIndependentIntervals, analysis.ciTypes,
                                               groupsOf(record), analysis.level());
  for (const auto& row : rows) {
    types.Category(keyText(row.label));
    addDifference(table, record);
    table.addIntervalCells(texts::kIntervalOfDifference, row.result);
  }
}

void buildIndependentTestTable(PRPAlgorithm& analysis, const PropZIndSamp& record) {
  ResultTable table(analysis, texts::kIndependentTestTable, texts::kStatisticMissingGroup);
  BpDimension& types = table.addRowDimension(keyText(texts::kTestType));
  table.addVariablesAndStatistics();
  addVariableRows(firstListVariable(analysis, record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const TestRows rows = requestedResults(kIndependentTests, analysis.testTypes, groupsOf(record));
  for (const auto& row : rows) {
    types.Category(keyText(row.label));
    addDifference(table, record);
    table.addTestCells(row);
  }
}

}  // namespace proportions
