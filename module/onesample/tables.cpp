#include "module/onesample/tables.h"

#include "module/onesample/significance.h"
#include "module/output/labels.h"
#include "module/output/result_table.h"

namespace proportions {
namespace {

OneSampleCounts countsOf(const PropZOneSamp& record) {
  return {record.numSuccesses, record.numFailures, record.numTrials};
}

void addObserved(ResultTable& table, const PropZOneSamp& record) {
  BpGroup& observed = table.statisticsGroup(keyText(texts::kObserved));
  table.addCount(observed, texts::kSuccesses, record.numSuccesses);
  table.addCount(observed, texts::kTrials, record.numTrials);
  table.addStatistic(observed, texts::kProportion, record.populationProportion);
}

void addDifference(ResultTable& table, const PRPAlgorithm& analysis, const PropZOneSamp& record) {
  const double testValue = analysis.testValue;
  BpCategory& difference = table.statistics().Category(keyText(texts::kObservedMinusTestValue));
  difference.Cell(BpNumber(record.estimatedDifference, analysis.procedure->GeneralStat()));
  difference.Note(numberLabel(texts::kTestValueNote,
                              BpNumber(testValue, analysis.procedure->SigDigit(testValue))));
}

}  // namespace

void buildOneSampleIntervalTable(PRPAlgorithm& analysis, const PropZOneSamp& record) {
  ResultTable table(analysis, texts::kOneSampleIntervalTable, texts::kStatisticMissing);
  BpDimension& types = table.addRowDimension(keyText(texts::kIntervalType));
  table.addVariablesAndStatistics();
  addVariableRows(firstListVariable(analysis, record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const IntervalRows rows =
      requestedIntervals(kOneSampleIntervals, analysis.ciTypes, countsOf(record), analysis.level());
  for (const auto& row : rows) {
    types.Category(keyText(row.label));
    addObserved(table, record);
    table.addStatistic(table.statistics(), texts::kStandardError, record._aseDiff1);
    table.addIntervalCells(texts::kInterval, row.result);
  }
}

void buildOneSampleTestTable(PRPAlgorithm& analysis, const PropZOneSamp& record) {
  ResultTable table(analysis, texts::kOneSampleTestTable, texts::kStatisticMissing);
  BpDimension& types = table.addRowDimension(keyText(texts::kTestType));
  table.addVariablesAndStatistics();
  addVariableRows(firstListVariable(analysis, record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const TestRows rows =
      requestedResults(kOneSampleTests, analysis.testTypes, countsOf(record), analysis.testValue);
  for (const auto& row : rows) {
    types.Category(keyText(row.label));
    addObserved(table, record);
    addDifference(table, analysis, record);
    table.addStatistic(table.statistics(), texts::kStandardError, record._aseDiff1);
    table.addTestCells(row);
  }
}

}  // namespace proportions
