#include "module/independent/run.h"

#include <cmath>

#include "module/data/case_reader.h"
#include "module/data/outcome_weights.h"
#include "module/independent/intervals.h"
#include "module/independent/tables.h"
#include "module/output/texts.h"
#include "module/output/warnings.h"

namespace proportions {
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

bool setFlags(std::vector<PropZIndSamp>& records) {
  bool anyGood = false;
  for (PropZIndSamp& record : records) {
    record.goodData =
        record.numObservations > 0.0 && record.numTrials1 > 0.0 && record.numTrials2 > 0.0;
    if (!record.goodData) continue;
    anyGood = true;
    record.completeData = (record.numSuccesses1 > 0.0 && record.numFailures1 > 0.0) ||
                          (record.numSuccesses2 > 0.0 && record.numFailures2 > 0.0);
  }
  return anyGood;
}

}  // namespace

void estimate(PropZIndSamp& record) {
  const double x1 = record.numSuccesses1, f1 = record.numFailures1, n1 = record.numTrials1;
  const double x2 = record.numSuccesses2, f2 = record.numFailures2, n2 = record.numTrials2;
  const double n = record.numObservations;
  const TwoGroups groups{{x1, f1, n1}, {x2, f2, n2}};
  record.populationProportion1 = x1 / n1;
  record.populationProportion2 = x2 / n2;
  record.estimatedDifference = differenceOfProportions(groups);
  record.ase1 = std::sqrt((f1 / n1) * (x1 / n1) / n1);
  record.ase2 = std::sqrt((f2 / n2) * (x2 / n2) / n2);
  const double pooled = ((x2 + x1) / n) * ((f2 + f1) / n);
  record._aseDiff0 = std::sqrt(pooled / n2 + pooled / n1);
  record._aseDiff1 = std::sqrt(unpooledVariance(groups));
}

bool runIndependentSamples(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  if (!analysis.computeCriticalValue()) return false;
  if (!countCases(analysis, iterator) || !setFlags(analysis.independentRecords)) {
    analysis.goodData = false;
    warnNothingValid(analysis, texts::kTooFewCasesGroup, texts::kTooFewCasesGroupSplit);
    return false;
  }
  for (PropZIndSamp& record : analysis.independentRecords) {
    if (record.goodData) {
      estimate(record);
    } else {
      warnVariableInvalid(analysis, texts::kTooFewCasesVariableGroup,
                          texts::kTooFewCasesVariableGroupSplit,
                          analysis.testVarIndices[record.localVarIndex]);
    }
    buildIndependentGroupStatisticsTable(analysis, record);
    buildIndependentIntervalTable(analysis, record);
    buildIndependentTestTable(analysis, record);
  }
  return true;
}

}  // namespace proportions
