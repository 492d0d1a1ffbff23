#include "module/onesample/run.h"

#include <cmath>

#include "module/data/case_reader.h"
#include "module/data/outcome_weights.h"
#include "module/math/arithmetic.h"
#include "module/onesample/tables.h"
#include "module/output/texts.h"
#include "module/output/warnings.h"

namespace proportions {
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

bool setFlags(std::vector<PropZOneSamp>& records) {
  bool anyGood = false;
  for (PropZOneSamp& record : records) {
    record.goodData = record.numTrials > 0.0;
    if (!record.goodData) continue;
    anyGood = true;
    record.completeData = record.numSuccesses > 0.0 && record.numFailures > 0.0;
  }
  return anyGood;
}

}  // namespace

void estimate(PropZOneSamp& record, double testValue) {
  const double x = record.numSuccesses, f = record.numFailures, n = record.numTrials;
  record.populationProportion = x / n;
  record.estimatedDifference = deviation(x, n, testValue) / n;
  record._aseDiff0 = std::sqrt((1.0 - testValue) * testValue / n);
  record._aseDiff1 = std::sqrt((f / n) * (x / n) / n);
}

bool runOneSample(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  if (!analysis.computeCriticalValue()) return false;
  countCases(analysis, iterator);
  if (!setFlags(analysis.oneSampleRecords)) {
    analysis.goodData = false;
    warnNothingValid(analysis, texts::kTooFewCases, texts::kTooFewCasesSplit);
    return false;
  }
  for (PropZOneSamp& record : analysis.oneSampleRecords) {
    if (record.goodData) {
      estimate(record, analysis.testValue);
    } else {
      warnVariableInvalid(analysis, texts::kTooFewCasesVariable, texts::kTooFewCasesVariableSplit,
                          analysis.testVarIndices[record.localVarIndex]);
    }
    buildOneSampleIntervalTable(analysis, record);
    buildOneSampleTestTable(analysis, record);
  }
  return true;
}

}  // namespace proportions
