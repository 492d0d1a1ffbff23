#include "module/independent/run.h"

#include "module/data/case_reader.h"
#include "module/data/outcome_weights.h"
#include "module/independent/estimates.h"
#include "module/independent/tables.h"
#include "module/model/texts.h"
#include "module/output/warnings.h"

namespace proportions::independent {
namespace {

/// False when neither side has any weight. One side is enough to go on: a missing side is caught
/// per variable.
bool countCases(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  double sideTotals[2] = {0.0, 0.0};
  CaseReader reader(analysis, iterator);
  UsedCase used;
  OutcomeWeights weights;
  while (reader.nextUsedCase(used)) {
    if (used.group != 0 && used.group != 1) continue;
    sideTotals[used.group] += used.weight;
    weights.setWeight(used.weight);
    for (PropZIndSamp& record : analysis.independentRecords) {
      const Code code = used.first[record.localVarIndex];
      if (used.group == 0) {
        weights.add(code, record.numSuccesses1, record.numFailures1, record.numTrials1);
      } else {
        weights.add(code, record.numSuccesses2, record.numFailures2, record.numTrials2);
      }
      record.numObservations += weights.trial(code);
    }
  }
  return sideTotals[0] > 0.0 || sideTotals[1] > 0.0;
}

}  // namespace

bool runIndependentSamples(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  analysis.computeCriticalValue();
  bool anyGood = false;
  if (countCases(analysis, iterator)) {
    for (PropZIndSamp& record : analysis.independentRecords) anyGood |= setFlags(record);
  }
  if (!anyGood) {
    analysis.goodData = false;
    warnNothingValid(analysis.splitFile, texts::kTooFewCasesGroup, texts::kTooFewCasesGroupSplit);
    return false;
  }
  for (PropZIndSamp& record : analysis.independentRecords) {
    if (record.goodData) {
      estimate(record);
    } else {
      warnVariableInvalid(analysis.splitFile, texts::kTooFewCasesVariableGroup,
                          texts::kTooFewCasesVariableGroupSplit,
                          analysis.firstListVariable(record.localVarIndex).index);
    }
    buildIndependentGroupStatisticsTable(analysis, record);
    buildIndependentIntervalTable(analysis, record);
    buildIndependentTestTable(analysis, record);
  }
  return true;
}

}  // namespace proportions::independent
