#include "module/paired/tables.h"

#include "module/output/labels.h"
#include "module/output/result_table.h"
#include "module/paired/significance.h"

namespace proportions {
namespace {

PairedCounts countsOf(const PropZPairSamp& record) {
  return {record._n11, record._n10, record._n01, record._n00};
}

BpNumber pairNumber(const PRPAlgorithm& analysis, const PropZPairSamp& record) {
  return {static_cast<double>(record.pairIndex) + 1.0, analysis.procedure->Count()};
}

void addMeasurement(ResultTable& table, double successes, double trials, double proportion,
                    double standardError) {
  BpGroup& statistics = table.statistics();
  table.addCount(statistics, texts::kSuccesses, successes);
  table.addCount(statistics, texts::kTrials, trials);
  table.addStatistic(statistics, texts::kProportion, proportion);
  table.addNotedStatistic(statistics, texts::kStandardError, standardError);
}

void addPairCategory(const PRPAlgorithm& analysis, const PropZPairSamp& record,
                     BpGroup& variables) {
  BpComposite label(texts::kPairVariables);
  addPairItems(analysis, record, label);
  label.Finish();
  variables.Category(label);
}

void addDifference(ResultTable& table, const PropZPairSamp& record) {
  table.addStatistic(table.statistics(), texts::kDifference, record.estimatedDifference);
  table.addStatistic(table.statistics(), texts::kStandardError, record._aseDiff1);
}

}  // namespace

void addPairItems(const PRPAlgorithm& analysis, const PropZPairSamp& record, BpComposite& label) {
  label.Add(pairNumber(analysis, record));
  label.Add(BpVariable(analysis.testVarIndices[record.firstLocalVarIndex], 2));
  label.Add(BpVariable(analysis.secondVariable(record.secondLocalVarIndex), 2));
}

void buildPairedStatisticsTable(PRPAlgorithm& analysis, const PropZPairSamp& record) {
  ResultTable table(analysis, texts::kPairedStatisticsTable, texts::kStatisticMissing);
  table.addVariablesAndStatistics(true);
  BpGroup& pair =
      table.variables().Group(numberLabel(texts::kPair, pairNumber(analysis, record)), 1, 2);
  addVariableRows(firstListVariable(analysis, record.firstLocalVarIndex), pair);
  if (record.goodData) {
    addMeasurement(table, record._n1p, record.numObservations, record.firstProportion,
                   record.firstAse);
  }
  addVariableRows(secondListVariable(analysis, record.secondLocalVarIndex), pair);
  if (record.goodData) {
    addMeasurement(table, record._np1, record.numObservations, record.secondProportion,
                   record.secondAse);
  }
}

void buildPairedIntervalTable(PRPAlgorithm& analysis, const PropZPairSamp& record) {
  ResultTable table(analysis, texts::kPairedIntervalTable, texts::kStatisticMissing);
  BpDimension& types = table.addRowDimension(keyText(texts::kIntervalType));
  table.addVariablesAndStatistics();
  addPairCategory(analysis, record, table.variables());
  if (!record.goodData) return;

  const IntervalRows rows =
      requestedIntervals(kPairedIntervals, analysis.ciTypes, countsOf(record), analysis.level());
  for (const auto& row : rows) {
    types.Category(keyText(row.label));
    addDifference(table, record);
    table.addIntervalCells(texts::kIntervalOfDifference, row.result);
  }
}

void buildPairedTestTable(PRPAlgorithm& analysis, const PropZPairSamp& record) {
  ResultTable table(analysis, texts::kPairedTestTable, texts::kStatisticMissing);
  BpDimension& types = table.addRowDimension(keyText(texts::kTestType));
  table.addVariablesAndStatistics();
  addPairCategory(analysis, record, table.variables());
  if (!record.goodData) return;

  const TestRows rows = requestedResults(kPairedTests, analysis.testTypes, countsOf(record));
  for (const auto& row : rows) {
    types.Category(keyText(row.label));
    addDifference(table, record);
    table.addTestCells(row);
  }
}

}  // namespace proportions
