#include "module/driver/proporti.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "host/data_source.h"
#include "host/messages.h"
#include "host/output.h"
#include "host/parser.h"
#include "module/data/first_pass.h"
#include "module/data/resampling.h"
#include "module/diag/dump.h"
#include "module/diag/switches.h"
#include "module/independent/run.h"
#include "module/model/algorithm.h"
#include "module/model/texts.h"
#include "module/onesample/run.h"
#include "module/output/notes.h"
#include "module/paired/run.h"
#include "module/syntax/command_parser.h"

namespace proportions {
namespace {

struct DesignRun {
  Design design;
  bool (*run)(PRPAlgorithm&, ProcDSIterator&);
};

constexpr DesignRun kRuns[] = {{Design::kOneSample, onesample::runOneSample},
                               {Design::kPaired, paired::runPairedSamples},
                               {Design::kIndependent, independent::runIndependentSamples}};

bool runDesign(PRPAlgorithm& analysis, ProcDSIterator& iterator) {
  for (const auto& [design, run] : kRuns) {
    if (design == analysis.settings.modelType) return run(analysis, iterator);
  }
  return true;
}

using IteratorOwner = std::unique_ptr<ProcDSIterator>;

/// Owns the groups' analysis objects. The end of a run releases them in their order; an exception
/// destroys them in reverse order of their making.
class Groups {
 public:
  Groups() = default;
  Groups(const Groups&) = delete;
  Groups& operator=(const Groups&) = delete;
  ~Groups() {
    while (!owned_.empty()) owned_.pop_back();
  }

  void add(std::unique_ptr<PRPAlgorithm> group) { owned_.push_back(std::move(group)); }
  bool allGood() const {
    return std::all_of(owned_.begin(), owned_.end(),
                       [](const auto& group) { return group->goodData; });
  }
  std::vector<PRPAlgorithm*> list() const {
    std::vector<PRPAlgorithm*> groups;
    for (const auto& group : owned_) groups.push_back(group.get());
    return groups;
  }
  void release() {
    for (auto& group : owned_) group.reset();
    owned_.clear();
  }

 private:
  std::vector<std::unique_ptr<PRPAlgorithm>> owned_;
};

/// The two passes over the split groups.
class Analysis {
 public:
  Analysis(ProcedureDataSource& source, BpProcedure& procedure, const PRPValidSpecs& specs,
           PRPAggregation& store)
      : source_(source),
        procedure_(procedure),
        specs_(specs),
        store_(store),
        hasSplitVariables_(source.GetNSplitVars() != 0) {}

  /// The iterators and groups of both passes are locals in the order of their making, which an
  /// exception undoes from its end.
  void run() {
    IteratorOwner firstIterator = makeIterator();
    Groups groups;
    bool goOn = true;
    if (!source_.FatalError()) goOn = readGroups(*firstIterator, groups);
    if (!source_.FatalError()) {
      sortAggregation(store_);
      goOn = checkResamples(groups.list());
    }
    firstIterator.reset();
    IteratorOwner secondIterator;
    if (!source_.FatalError()) secondIterator = makeIterator();
    if (goOn) analyseGroups(groups.list(), secondIterator.get());
    secondIterator.reset();
    groups.release();
  }

 private:
  IteratorOwner makeIterator() {
    return IteratorOwner(static_cast<ProcDSIterator*>(source_.MakeIterator(nullptr)));
  }

  /// Reads group after group until there are no more. False when the only group cannot be analysed.
  bool readGroups(ProcDSIterator& iterator, Groups& groups) {
    bool moreGroups = true;
    bool goOn = true;
    while (moreGroups && goOn) {
      moreGroups = readNextGroup(iterator, groups) && hasSplitVariables_;
      if (!hasSplitVariables_) goOn = groups.allGood();
      if (source_.FatalError()) break;
    }
    return goOn;
  }

  /// Keeps what it has read. False, with nothing kept, when there was no group left or its sample
  /// number is invalid.
  bool readNextGroup(ProcDSIterator& iterator, Groups& groups) {
    auto group = std::make_unique<PRPAlgorithm>(source_, procedure_, specs_);
    if (!firstPass(*group, iterator, store_)) return false;
    groups.add(std::move(group));
    return true;
  }

  void analyseGroups(const std::vector<PRPAlgorithm*>& groups, ProcDSIterator* iterator) {
    for (PRPAlgorithm* group : groups) {
      if (source_.FatalError()) return;
      const bool completed = analyseGroup(*group, *iterator);
      if (!hasSplitVariables_ && !completed) return;
    }
  }

  bool analyseGroup(PRPAlgorithm& group, ProcDSIterator& iterator) {
    const bool readable = group.goodData;
    const bool completed = readable && runDesign(group, iterator);
    // Read through, so that the iterator stands at the next group.
    if (!readable) readGroup(group, iterator);
    if (completed && DiagnosticSwitches::probeNoncentrality) dumpNoncentralityProbe();
    if (DiagnosticSwitches::dumpAnalysis) dumpAlgorithm(group);
    return completed;
  }

  ProcedureDataSource& source_;
  BpProcedure& procedure_;
  const PRPValidSpecs& specs_;
  PRPAggregation& store_;
  bool hasSplitVariables_;
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
