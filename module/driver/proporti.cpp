#include "module/driver/proporti.h"

#include <memory>
#include <vector>

#include "host/data_source.h"
#include "host/messages.h"
#include "host/output.h"
#include "host/parser.h"
#include "module/data/first_pass.h"
#include "module/diag/dump.h"
#include "module/diag/switches.h"
#include "module/driver/algorithm.h"
#include "module/driver/resampling.h"
#include "module/independent/run.h"
#include "module/onesample/run.h"
#include "module/output/notes.h"
#include "module/output/texts.h"
#include "module/paired/run.h"
#include "module/syntax/command_parser.h"

namespace proportions {
namespace {

constexpr int kProcedureCode = 10;

bool runDesign(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  switch (analysis.modelType) {
    case kOneSample:
      return runOneSample(analysis, iterator);
    case kPairedSamples:
      return runPairedSamples(analysis, iterator);
    case kIndependentSamples:
      return runIndependentSamples(analysis, iterator);
    default:
      return true;
  }
}

/// The two passes over the split groups.
class Analysis {
 public:
  Analysis(ProcedureDataSource& source, BpProcedure& procedure, const PRPValidSpecs& specs,
           PRPAggregation& store)
      : source_(source), procedure_(procedure), specs_(specs), store_(store) {}
  ~Analysis() { release(); }
  Analysis(const Analysis&) = delete;
  Analysis& operator=(const Analysis&) = delete;

  void run() {
    hasSplitVariables_ = source_.GetNSplitVars() != 0;
    makeIterator();
    if (!source_.FatalError()) readGroups();
    if (!source_.FatalError()) {
      sortAggregation(store_);
      goOn_ = checkResamples(listOfGroups());
    }
    iterator_.reset();
    if (!source_.FatalError()) makeIterator();
    analyseGroups();
    release();
  }

 private:
  void makeIterator() {
    iterator_.reset(static_cast<ProcDSIterator*>(source_.MakeIterator(nullptr)));
  }

  void readGroups() {
    bool moreGroups = true;
    while (moreGroups && goOn_) {
      auto group = std::make_unique<PRPAlgorithm>(source_, procedure_, specs_);
      if (!firstPass(*group, *iterator_, store_)) {
        moreGroups = false;
      } else {
        groups_.push_back(std::move(group));
        if (!hasSplitVariables_) {
          moreGroups = false;
          goOn_ = groups_.back()->goodData;
        }
      }
      if (source_.FatalError()) break;
    }
  }

  std::vector<PRPAlgorithm*> listOfGroups() const {
    std::vector<PRPAlgorithm*> list;
    for (const auto& group : groups_) list.push_back(group.get());
    return list;
  }

  void analyseGroups() {
    for (size_t i = 0; goOn_ && i < groups_.size() && !source_.FatalError(); ++i) {
      PRPAlgorithm& group = *groups_[i];
      bool completed = false;
      if (group.goodData) {
        completed = runDesign(group, *iterator_);
        if (completed && DiagnosticSwitches::probeNoncentrality) dumpNoncentralityProbe();
      } else {
        // Read through, so that the iterator stands at the next group.
        readGroup(group, *iterator_);
      }
      if (DiagnosticSwitches::dumpAnalysis) dumpAlgorithm(group);
      goOn_ = hasSplitVariables_ || completed;
    }
  }

  /// The iterator first, then the groups in their order.
  void release() {
    iterator_.reset();
    for (auto& group : groups_) group.reset();
    groups_.clear();
  }

  ProcedureDataSource& source_;
  BpProcedure& procedure_;
  const PRPValidSpecs& specs_;
  PRPAggregation& store_;
  bool hasSplitVariables_ = false;
  bool goOn_ = true;
  std::vector<std::unique_ptr<PRPAlgorithm>> groups_;
  std::unique_ptr<ProcDSIterator> iterator_;
};

void runProcedure() {
  BpProcedure procedure(texts::kProcedureTitle, kProcedureCode);
  ZELK_TokenSequence tokens(true);
  ProcedureDataSource source;
  source.Bootstrapping(true);
  PRPValidSpecs specs(source);
  PRPCommandParser parser(tokens, specs, source);
  const bool parsed = parser.parse();
  if (parsed && !source.FatalError()) {
    addProcedureNotes(specs);
    if (DiagnosticSwitches::dumpSpecification) dumpSpecification(specs);
  }
  PRPAggregation store;
  if (!parsed || source.FatalError()) return;
  BEPesRepos::BEPesClear();
  Analysis(source, procedure, specs, store).run();
  BEPesRepos::BEPesCheckError();
}

}  // namespace
}  // namespace proportions

void PROPORTI() { proportions::runProcedure(); }
