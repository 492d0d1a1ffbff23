#include "workbench/bootstrap/bootstrap.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/constants.h"
#include "workbench/bootstrap/bootstrap_tables.h"
#include "workbench/bootstrap/left_out.h"
#include "workbench/bootstrap/marginal_cases.h"
#include "workbench/bootstrap/resampled_dataset.h"
#include "workbench/bootstrap/sample_drawer.h"
#include "workbench/bootstrap/sampled_cases.h"
#include "workbench/bootstrap/sampled_results.h"
#include "workbench/output/labels.h"
#include "workbench/output/output_document.h"
#include "workbench/pooling/imputations.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// Rows to read for all cases left out, beyond which BCa bounds would take too long.
constexpr double kMostLeftOutWork = 4e8;
/// Rows of the samples that are held at a time, with one case left out of each.
constexpr size_t kMostLeftOutRows = size_t{8} << 20U;

/// Runs the procedure on samples, into a document of its own.
class SampleRunner {
 public:
  SampleRunner(Session& session, const std::function<void()>& entry)
      : session_(session), entry_(entry) {}

  /// Calls `take` with what the run shows.
  void run(const SampledCases& cases, const Samples& samples,
           const std::function<void(const DocumentProcedure&)>& take) {
    ResampledDataset dataset(*session_.dataset, cases, samples);
    OutputDocument document;
    const Session before = session_;
    session_.dataset = &dataset;
    session_.document = &document;
    session_.observer = nullptr;
    session_.facts = nullptr;
    session_.oneMethod = true;
    try {
      document.beginProcedure("", "");
      entry_();
      document.finishProcedure(&dataset);
      take(*document.procedures().front());
    } catch (...) {
      session_ = before;
      throw;
    }
    session_ = before;
  }

 private:
  Session& session_;
  const std::function<void()>& entry_;
};

std::optional<size_t> onlyTheData(int64_t sample) {
  return sample == 0 ? std::optional<size_t>(0) : std::nullopt;
}

/// Of a batch whose first sample has that number; the data are in every batch.
auto slotsFrom(size_t first) {
  return [first](int64_t sample) {
    return sample == 0 ? std::nullopt : std::optional(first + static_cast<size_t>(sample) - 1);
  };
}

/// Messages about samples are not shown, but somebody should know that there were some.
int64_t messagesAboutSamples(const DocumentProcedure& procedure) {
  return std::count_if(procedure.messages.begin(), procedure.messages.end(),
                       [](const DocumentMessage& message) {
                         return !message.split.empty() && message.split.back().second != "0";
                       });
}

/// Finds the group of cases that a result is about.
class GroupFinder {
 public:
  GroupFinder(const SampledCases& cases, const std::vector<VarIndex>& splitVariables) {
    for (size_t group = 0; group < cases.groups.size(); ++group) {
      std::string key;
      const std::vector<SplitValue>& values = cases.groups[group].split;
      for (size_t i = 0; i < values.size(); ++i) {
        key += describeSplitValue(splitVariables[i], values[i]).identity + '\0';
      }
      groups_.emplace(std::move(key), group);
    }
  }
  size_t groupOf(const SampledResult& result) const {
    std::string key;
    for (const LabelData& value : result.split) key += value.identity + '\0';
    return groups_.at(key);
  }

 private:
  std::unordered_map<std::string, size_t> groups_;
};

/// Positions of a result's variables among those of the cases, the grouping variable included; all
/// of them when a case's missing value in one variable leaves it out of every analysis.
std::vector<size_t> positionsOf(const SampledResult& result, const SampledCases& cases,
                                const CommandFacts& facts, const ActiveDataset& dataset) {
  std::vector<size_t> positions;
  for (size_t i = 0; i < cases.variables.size(); ++i) {
    const std::string& name = dataset.declaration(cases.variables[i]).name;
    const bool own =
        std::find(result.variables.begin(), result.variables.end(), name) != result.variables.end();
    if (own || facts.listwise || cases.variables[i] == facts.grouping) positions.push_back(i);
  }
  return positions;
}

/// What a result is about: a group, and variables of the cases by their positions.
struct ResultPlace {
  size_t group;
  std::vector<size_t> positions;
};

std::vector<ResultPlace> placesOf(const SampledResults& results, const SampledCases& cases,
                                  const CommandFacts& facts, const ActiveDataset& dataset) {
  const GroupFinder finder(cases, dataset.splitVariables());
  std::vector<ResultPlace> places;
  for (const SampledResult& result : results.results()) {
    places.push_back({finder.groupOf(result), positionsOf(result, cases, facts, dataset)});
  }
  return places;
}

MarginalCases addedUp(const SampledCases& cases, const std::vector<ResultPlace>& places,
                      const CommandFacts& facts, ActiveDataset& dataset) {
  std::vector<DependenceSets> sets(cases.groups.size());
  for (const auto& [group, positions] : places) sets[group].insert(positions);
  for (DependenceSets& ofGroup : sets) {
    // A group without results has cases all the same.
    if (ofGroup.empty()) ofGroup.insert(std::vector<size_t>());
  }
  return {cases, sets, dataset, facts};
}

void tell(const ProgressCallback& progress, Phase phase, size_t done, size_t all) {
  if (!progress || all == 0) return;
  progress(phase, 100.0 * static_cast<double>(done) / static_cast<double>(all),
           static_cast<int64_t>(done));
}

/// The value of each result with one case left out; nothing when that would take too long.
std::optional<std::vector<std::vector<LeftOut>>> leaveOut(const SampledCases& cases,
                                                          const MarginalCases& marginal,
                                                          const std::vector<ResultPlace>& places,
                                                          const SampledResults& results,
                                                          SampleRunner& runner,
                                                          const ProgressCallback& progress) {
  LeftOutCases leftOut(cases);
  std::vector<const std::vector<LeftOutKind>*> kinds;
  for (const auto& [group, positions] : places) {
    kinds.push_back(&leftOut.kinds(group, positions));
    if (leftOut.work() > kMostLeftOutWork) return std::nullopt;
  }
  const size_t samples = leftOut.samples();
  SampledResults without(samples + 1);
  const size_t rows = std::max<size_t>(1, marginal.cases().rows());
  const size_t batch = std::max<size_t>(1, kMostLeftOutRows / rows);
  tell(progress, Phase::kLeavingOut, 0, samples);
  for (size_t first = 1; first <= samples; first += batch) {
    const size_t last = std::min(first + batch, samples + 1);
    runner.run(
        marginal.cases(), leftOut.samples(marginal, first, last),
        [&](const DocumentProcedure& procedure) { without.add(procedure, slotsFrom(first)); });
    tell(progress, Phase::kLeavingOut, last - 1, samples);
  }
  std::vector<std::vector<LeftOut>> values;
  for (size_t i = 0; i < kinds.size(); ++i) {
    const SampledResult* found = without.find(results.results()[i]);
    std::vector<LeftOut>& list = values.emplace_back();
    for (const LeftOutKind& kind : *kinds[i]) {
      list.push_back({found == nullptr ? kSystemMissing : found->values[kind.sample], kind.cases});
    }
  }
  return values;
}

/// Quantiles take the value of every sample.
void refuseTooMany(const BootstrapOptions& options, size_t results) {
  const double bytes = static_cast<double>(options.samples) * static_cast<double>(results) *
                       static_cast<double>(sizeof(double));
  if (bytes <= static_cast<double>(options.memoryLimit)) return;
  throw DataError(fmt::format(
      "--bootstrap: {} samples of {} results take more than {} MiB; draw fewer samples, or name "
      "fewer variables.",
      options.samples, results, options.memoryLimit >> 20));
}

}  // namespace

void refuseBootstrapOf(ActiveDataset& dataset) {
  for (VarIndex index = 0; index < dataset.variableCount(); ++index) {
    if (dataset.declaration(index).name == kSampleVariable) {
      throw DataError(std::string("--bootstrap: the data have a variable ") + kSampleVariable +
                      ", the name of the samples to be drawn; rename it, or leave --bootstrap "
                      "out to analyse the samples that it numbers.");
    }
  }
  const auto position = imputationPosition(dataset);
  if (position && !dataset.failed()) {
    throw DataError(
        "--bootstrap: " + dataset.declaration(dataset.splitVariables()[*position]).name +
        " splits the data into imputations; samples of imputed data are not drawn. "
        "Leave --bootstrap out, or analyse one imputation.");
  }
}

void addBootstrap(Session& session, const CommandFacts& facts, const BootstrapOptions& options,
                  const std::function<void()>& entry, const ProgressCallback& progress) {
  std::vector<VarIndex> variables = facts.variables();
  for (const VarIndex split : session.dataset->splitVariables()) {
    if (std::find(variables.begin(), variables.end(), split) == variables.end()) {
      variables.push_back(split);
    }
  }
  const SampledCases cases = sampledCases(*session.dataset, variables, options.memoryLimit);
  if (cases.groups.empty()) return;
  SampleRunner runner(session, entry);
  BootstrapFindings findings{options.samples, options.seed, 0, SampledResults(1), std::nullopt};
  runner.run(cases, Samples(cases.groups.size()), [&](const DocumentProcedure& procedure) {
    findings.results.add(procedure, onlyTheData);
  });
  if (findings.results.results().empty()) return;
  refuseTooMany(options, findings.results.results().size());
  findings.results.makeRoom(static_cast<size_t>(options.samples) + 1);
  const std::vector<ResultPlace> places =
      placesOf(findings.results, cases, facts, *session.dataset);
  const MarginalCases marginal = addedUp(cases, places, facts, *session.dataset);
  SampleDrawer drawer(cases, marginal, options.seed, options.samples);
  findings.leftOut = leaveOut(cases, marginal, places, findings.results, runner, progress);
  const auto samples = static_cast<size_t>(options.samples);
  size_t drawn = 0;
  tell(progress, Phase::kSamples, drawn, samples);
  while (const auto batch = drawer.next()) {
    runner.run(marginal.cases(), batch->samples, [&](const DocumentProcedure& procedure) {
      findings.messages += messagesAboutSamples(procedure);
      findings.results.add(procedure, slotsFrom(static_cast<size_t>(batch->first)));
    });
    drawn += batch->samples.front().size();
    tell(progress, Phase::kSamples, drawn, samples);
  }
  addBootstrapTables(session, facts.level, findings);
}

}  // namespace workbench
