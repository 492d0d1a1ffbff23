#include "module/onesample/run.h"

#include "module/data/case_reader.h"
#include "module/data/outcome_weights.h"
#include "module/model/texts.h"
#include "module/onesample/estimates.h"
#include "module/onesample/tables.h"
#include "module/output/warnings.h"

namespace proportions::onesample {
namespace {

void countCases(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  CaseReader reader(analysis, iterator);
  UsedCase used;
  OutcomeWeights weights;
  while (reader.nextUsedCase(used)) {
    weights.setWeight(used.weight);
    for (PropZOneSamp& record : analysis.oneSampleRecords) {
      weights.add(used.first[record.localVarIndex], record.numSuccesses, record.numFailures,
                  record.numTrials);
    }
  }
}

}  // namespace

bool runOneSample(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  analysis.computeCriticalValue();
  countCases(analysis, iterator);
  bool anyGood = false;
  for (PropZOneSamp& record : analysis.oneSampleRecords) anyGood |= setFlags(record);
  if (!anyGood) {
    analysis.goodData = false;
    warnNothingValid(analysis.splitFile, texts::kTooFewCases, texts::kTooFewCasesSplit);
    return false;
  }
  for (PropZOneSamp& record : analysis.oneSampleRecords) {
    if (record.goodData) {
      estimate(record, analysis.settings.testValue);
    } else {
      warnVariableInvalid(analysis.splitFile, texts::kTooFewCasesVariable,
                          texts::kTooFewCasesVariableSplit,
                          analysis.firstListVariable(record.localVarIndex).index);
    }
    buildOneSampleIntervalTable(analysis, record);
    buildOneSampleTestTable(analysis, record);
  }
  return true;
}

}  // namespace proportions::onesample
