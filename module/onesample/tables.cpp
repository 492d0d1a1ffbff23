#include "module/onesample/tables.h"

#include "module/model/texts.h"
#include "module/onesample/intervals.h"
#include "module/onesample/significance.h"
#include "module/output/labels.h"
#include "module/output/result_table.h"

namespace proportions::onesample {
namespace {

void addObserved(ResultTable& table, const PropZOneSamp& record) {
  BpGroup& observed = table.statisticsGroup(keyText(texts::kObserved));
  table.addCount(observed, texts::kSuccesses, record.numSuccesses);
  table.addCount(observed, texts::kTrials, record.numTrials);
  table.addStatistic(observed, texts::kProportion, record.populationProportion);
}

void addDifference(ResultTable& table, const PRPAlgorithm& analysis, const PropZOneSamp& record) {
  const double testValue = analysis.settings.testValue;
  BpProcedure& procedure = *analysis.procedure;
  BpCategory& difference = table.statistics().Category(keyText(texts::kObservedMinusTestValue));
  difference.Cell(BpNumber(record.estimatedDifference, procedure.GeneralStat()));
  difference.Note(
      NumberLabel(texts::kTestValueNote, BpNumber(testValue, procedure.SigDigit(testValue))));
}

}  // namespace

void buildOneSampleIntervalTable(const PRPAlgorithm& analysis, const PropZOneSamp& record) {
  const CommandSettings& settings = analysis.settings;
  ResultTable table(*analysis.procedure, texts::kOneSampleIntervalTable, texts::kStatisticMissing,
                    keyText(texts::kIntervalType));
  AddVariableRows(analysis.firstListVariable(record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const IntervalRows rows =
      requestedIntervals(kIntervals, settings.ciTypes, countsOf(record), analysis.level());
  table.addIntervals(rows, texts::kInterval, settings.ciLevel, [&] {
    addObserved(table, record);
    table.addStatistic(table.statistics(), texts::kStandardError, record._aseDiff1);
  });
}

void buildOneSampleTestTable(const PRPAlgorithm& analysis, const PropZOneSamp& record) {
  const CommandSettings& settings = analysis.settings;
  ResultTable table(*analysis.procedure, texts::kOneSampleTestTable, texts::kStatisticMissing,
                    keyText(texts::kTestType));
  AddVariableRows(analysis.firstListVariable(record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const TestRows rows =
      requestedResults(kTests, settings.testTypes, countsOf(record), settings.testValue);
  table.addTests(rows, [&] {
    addObserved(table, record);
    addDifference(table, analysis, record);
    table.addStatistic(table.statistics(), texts::kStandardError, record._aseDiff1);
  });
}

}  // namespace proportions::onesample
