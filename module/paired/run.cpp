#include "module/paired/run.h"

#include "module/data/case_reader.h"
#include "module/math/arithmetic.h"
#include "module/model/texts.h"
#include "module/output/warnings.h"
#include "module/paired/estimates.h"
#include "module/paired/pair_counter.h"
#include "module/paired/tables.h"

namespace proportions::paired {
namespace {

/// From this many pairs on, counting by bits is worth its set-up.
constexpr size_t kManyPairs = 16;

void countCase(PropZPairSamp& record, const UsedCase& used, const std::vector<Code>& second) {
  const Code c1 = used.first[record.firstLocalVarIndex];
  const Code c2 = second[record.secondLocalVarIndex];
  if (c1 < 0 || c2 < 0) return;
  double& cell =
      c1 == 1 ? (c2 == 1 ? record._n11 : record._n10) : (c2 == 1 ? record._n01 : record._n00);
  cell += used.weight;
}

/// Counts the four cells of every pair. `total` is the weight of the group's valid cases; a sum of
/// ones goes no further than kAllWhole, so that one which got there may stand for more.
void countCells(PRPAlgorithm& analysis, ProcDSIterator& iterator, double total) {
  CaseReader reader(analysis, iterator);
  UsedCase used;
  std::vector<PropZPairSamp>& records = analysis.pairedRecords;
  const CommandSettings& settings = analysis.settings;
  if (records.size() >= kManyPairs && total < kAllWhole) {
    PairCounter counter(settings.testVarIndices.size(), settings.secondVarIndices.size(), records);
    while (reader.nextUsedCase(used)) counter.add(used.first, used.second, used.weight);
    counter.finish();
    return;
  }
  const bool twoLists = !settings.secondVarIndices.empty();
  while (reader.nextUsedCase(used)) {
    for (PropZPairSamp& record : records) {
      countCase(record, used, twoLists ? used.second : used.first);
    }
  }
}

}  // namespace

bool runPairedSamples(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  const double total = analysis.wValid;  // the next call starts the counters afresh
  analysis.computeCriticalValue();
  countCells(analysis, iterator, total);
  bool anyGood = false;
  for (PropZPairSamp& record : analysis.pairedRecords) {
    addMargins(record);
    anyGood |= setFlags(record);
  }
  if (!anyGood) {
    analysis.goodData = false;
    warnNothingValid(analysis.splitFile, texts::kTooFewCases, texts::kTooFewCasesSplit);
    return false;
  }
  for (PropZPairSamp& record : analysis.pairedRecords) {
    if (record.goodData) {
      estimate(record);
    } else {
      warnOneInvalid(analysis.splitFile, texts::kTooFewCasesPair, texts::kTooFewCasesPairSplit,
                     [&](BpComposite& label) { addPairItems(analysis, record, label); });
    }
    buildPairedStatisticsTable(analysis, record);
    buildPairedIntervalTable(analysis, record);
    buildPairedTestTable(analysis, record);
  }
  return true;
}

}  // namespace proportions::paired
