#include "module/independent/tables.h"

#include "module/independent/intervals.h"
#include "module/independent/significance.h"
#include "module/model/texts.h"
#include "module/output/labels.h"
#include "module/output/result_table.h"

namespace proportions::independent {
namespace {

/// What the statistics table shows of one side of the grouping.
struct Side {
  double successes;
  double trials;
  double proportion;
  double standardError;
};

void addSide(ResultTable& table, const BpComposite& label, const Side& side) {
  BpGroup& statistics = table.statistics();
  table.inner().Category(label);
  table.addCount(statistics, texts::kSuccesses, side.successes);
  table.addCount(statistics, texts::kTrials, side.trials);
  table.addStatistic(statistics, texts::kProportion, side.proportion);
  table.addStatistic(statistics, texts::kStandardError, side.standardError);
}

void addDifference(ResultTable& table, const PropZIndSamp& record) {
  table.addStatistic(table.statistics(), texts::kDifference, record.estimatedDifference);
  table.addStatistic(table.statistics(), texts::kStandardError, record._aseDiff1);
}

}  // namespace

/// A rule that makes no sides has no labels for them, and then no rows.
void buildIndependentGroupStatisticsTable(const PRPAlgorithm& analysis,
                                          const PropZIndSamp& record) {
  const Grouping grouping = analysis.grouping();
  ResultTable table(*analysis.procedure, texts::kGroupStatisticsTable,
                    texts::kStatisticMissingGroup, BpVariable(grouping.index, kShowLabelElseName));
  AddVariableRows(analysis.firstListVariable(record.localVarIndex), table.variables());
  if (!record.goodData) return;

  AddCutSideCategories(grouping, table.inner());
  if (const auto label = GroupSideLabel(grouping, 0)) {
    addSide(table, *label,
            {record.numSuccesses1, record.numTrials1, record.populationProportion1, record.ase1});
  }
  if (const auto label = GroupSideLabel(grouping, 1)) {
    addSide(table, *label,
            {record.numSuccesses2, record.numTrials2, record.populationProportion2, record.ase2});
  }
}

void buildIndependentIntervalTable(const PRPAlgorithm& analysis, const PropZIndSamp& record) {
  const CommandSettings& settings = analysis.settings;
  ResultTable table(*analysis.procedure, texts::kIndependentIntervalTable,
                    texts::kStatisticMissingGroup, keyText(texts::kIntervalType));
  AddVariableRows(analysis.firstListVariable(record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const IntervalRows rows =
      requestedIntervals(kIntervals, settings.ciTypes, countsOf(record), analysis.level());
  table.addIntervals(rows, texts::kIntervalOfDifference, settings.ciLevel,
                     [&] { addDifference(table, record); });
}

void buildIndependentTestTable(const PRPAlgorithm& analysis, const PropZIndSamp& record) {
  ResultTable table(*analysis.procedure, texts::kIndependentTestTable,
                    texts::kStatisticMissingGroup, keyText(texts::kTestType));
  AddVariableRows(analysis.firstListVariable(record.localVarIndex), table.variables());
  if (!record.goodData) return;

  const TestRows rows = requestedResults(kTests, analysis.settings.testTypes, countsOf(record));
  table.addTests(rows, [&] { addDifference(table, record); });
}

}  // namespace proportions::independent
