#include "module/paired/tables.h"

#include "module/model/texts.h"
#include "module/output/labels.h"
#include "module/output/result_table.h"
#include "module/paired/intervals.h"
#include "module/paired/significance.h"

namespace proportions::paired {
namespace {

/// What the statistics table shows of one measurement of a pair.
struct Measurement {
  double successes;
  double trials;
  double proportion;
  double standardError;
};

BpNumber pairNumber(const PRPAlgorithm& analysis, const PropZPairSamp& record) {
  return {static_cast<double>(record.pairIndex) + 1.0, analysis.procedure->Count()};
}

void addMeasurement(ResultTable& table, const Measurement& measurement) {
  BpGroup& statistics = table.statistics();
  table.addCount(statistics, texts::kSuccesses, measurement.successes);
  table.addCount(statistics, texts::kTrials, measurement.trials);
  table.addStatistic(statistics, texts::kProportion, measurement.proportion);
  table.addNotedStatistic(statistics, texts::kStandardError, measurement.standardError);
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
  const CommandSettings& settings = analysis.settings;
  const auto first = static_cast<size_t>(record.firstLocalVarIndex);
  label.Add(pairNumber(analysis, record));
  label.Add(BpVariable(settings.testVarIndices[first], kShowLabelElseName));
  label.Add(BpVariable(settings.secondVariable(record.secondLocalVarIndex), kShowLabelElseName));
}

void buildPairedStatisticsTable(const PRPAlgorithm& analysis, const PropZPairSamp& record) {
  ResultTable table(*analysis.procedure, texts::kPairedStatisticsTable, texts::kStatisticMissing);
  BpGroup& pair = table.variables().Group(NumberLabel(texts::kPair, pairNumber(analysis, record)),
                                          kGroupCode, kGroupStyle);
  AddVariableRows(analysis.firstListVariable(record.firstLocalVarIndex), pair);
  if (record.goodData) {
    addMeasurement(table,
                   {record._n1p, record.numObservations, record.firstProportion, record.firstAse});
  }
  AddVariableRows(analysis.secondListVariable(record.secondLocalVarIndex), pair);
  if (record.goodData) {
    addMeasurement(
        table, {record._np1, record.numObservations, record.secondProportion, record.secondAse});
  }
}

void buildPairedIntervalTable(const PRPAlgorithm& analysis, const PropZPairSamp& record) {
  const CommandSettings& settings = analysis.settings;
  ResultTable table(*analysis.procedure, texts::kPairedIntervalTable, texts::kStatisticMissing,
                    keyText(texts::kIntervalType));
  addPairCategory(analysis, record, table.variables());
  if (!record.goodData) return;

  const IntervalRows rows =
      requestedIntervals(kIntervals, settings.ciTypes, countsOf(record), analysis.level());
  table.addIntervals(rows, texts::kIntervalOfDifference, settings.ciLevel,
                     [&] { addDifference(table, record); });
}

void buildPairedTestTable(const PRPAlgorithm& analysis, const PropZPairSamp& record) {
  ResultTable table(*analysis.procedure, texts::kPairedTestTable, texts::kStatisticMissing,
                    keyText(texts::kTestType));
  addPairCategory(analysis, record, table.variables());
  if (!record.goodData) return;

  const TestRows rows = requestedResults(kTests, analysis.settings.testTypes, countsOf(record));
  table.addTests(rows, [&] { addDifference(table, record); });
}

}  // namespace proportions::paired
