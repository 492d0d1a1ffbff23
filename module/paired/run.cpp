#include "module/paired/run.h"

#include <cmath>

#include "module/data/case_reader.h"
#include "module/output/texts.h"
#include "module/output/warnings.h"
#include "module/paired/intervals.h"
#include "module/paired/pair_counter.h"
#include "module/paired/tables.h"

namespace proportions {
namespace {

/// From this many pairs on, counting by bits is worth its set-up.
constexpr size_t kManyPairs = 16;
/// Up to this total every sum of whole weights is exact, whatever its order.
constexpr double kExactTotal = 9007199254740992.0;

void countCase(PropZPairSamp& record, const UsedCase& used, const std::vector<Code>& second) {
  const Code c1 = used.first[record.firstLocalVarIndex];
  const Code c2 = second[record.secondLocalVarIndex];
  if (c1 < 0 || c2 < 0) return;
  double& cell =
      c1 == 1 ? (c2 == 1 ? record._n11 : record._n10) : (c2 == 1 ? record._n01 : record._n00);
  cell += used.weight;
}

/// Counts the four cells of every pair. `total` is the weight of the group's valid cases.
void countCells(PRPAlgorithm& analysis, ProcDSIterator& iterator, double total) {
  CaseReader reader(analysis, iterator);
  UsedCase used;
  std::vector<PropZPairSamp>& records = analysis.pairedRecords;
  if (records.size() >= kManyPairs && total <= kExactTotal) {
    PairCounter counter(analysis.testVarIndices.size(), analysis.secondVarIndices.size(), records);
    while (reader.nextUsedCase(used)) counter.add(used.first, used.second, used.weight);
    counter.finish();
    return;
  }
  const bool twoLists = !analysis.secondVarIndices.empty();
  while (reader.nextUsedCase(used)) {
    for (PropZPairSamp& record : records) {
      countCase(record, used, twoLists ? used.second : used.first);
    }
  }
}

void addMargins(PropZPairSamp& record) {
  record._n1p = record._n11 + record._n10;
  record._np1 = record._n11 + record._n01;
  record._n0p = record._n01 + record._n00;
  record._np0 = record._n10 + record._n00;
  record.numObservations = record._n11 + record._n10 + record._n01 + record._n00;
}

bool setFlags(std::vector<PropZPairSamp>& records) {
  bool anyGood = false;
  for (PropZPairSamp& record : records) {
    record.goodData = record.numObservations > 0.0;
    if (!record.goodData) continue;
    anyGood = true;
    const double b = record._n10, c = record._n01;
    record.completeData = b + c > 0.0 && record._n1p > 0.0 && record._np1 > 0.0 &&
                          discordantSpread(record._n11 + record._n00, b, c) > 0.0;
  }
  return anyGood;
}

/// sqrt((1 - p)·p / successes). The division by the measurement's own successes, not by the
/// observations, is the rule of this design; without successes there is no value.
double measurementError(double successes, double failures, double n) {
  if (!(successes > 0.0)) return kSystemMissing;
  return std::sqrt((failures / n) * (successes / n) / successes);
}

}  // namespace

void estimate(PropZPairSamp& record) {
  const double n = record.numObservations, b = record._n10, c = record._n01;
  record._p11 = record._n11 / n;
  record._p10 = b / n;
  record._p01 = c / n;
  record._p00 = record._n00 / n;
  record.firstProportion = record._n1p / n;
  record.secondProportion = record._np1 / n;
  record.estimatedDifference = (b - c) / n;
  record.firstAse = measurementError(record._n1p, record._n0p, n);
  record.secondAse = measurementError(record._np1, record._np0, n);
  record._aseDiff0 = std::sqrt((record._p10 + record._p01) / n);
  record._aseDiff1 = std::sqrt(discordantSpread(record._n11 + record._n00, b, c) / n);
}

bool runPairedSamples(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  const double total =
      analysis.wValid;  // of the first pass; the next call starts the counters afresh
  if (!analysis.computeCriticalValue()) return false;
  countCells(analysis, iterator, total);
  for (PropZPairSamp& record : analysis.pairedRecords) addMargins(record);
  if (!setFlags(analysis.pairedRecords)) {
    analysis.goodData = false;
    warnNothingValid(analysis, texts::kTooFewCases, texts::kTooFewCasesSplit);
    return false;
  }
  for (PropZPairSamp& record : analysis.pairedRecords) {
    if (record.goodData) {
      estimate(record);
    } else {
      warnOneInvalid(analysis, texts::kTooFewCasesPair, texts::kTooFewCasesPairSplit,
                     [&](BpComposite& label) { addPairItems(analysis, record, label); });
    }
    buildPairedStatisticsTable(analysis, record);
    buildPairedIntervalTable(analysis, record);
    buildPairedTestTable(analysis, record);
  }
  return true;
}

}  // namespace proportions
