#include "workbench/bootstrap/bootstrap.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/constants.h"
#include "workbench/bootstrap/bootstrap_tables.h"
#include "workbench/bootstrap/left_out.h"
#include "workbench/bootstrap/resampled_dataset.h"
#include "workbench/bootstrap/sampled_cases.h"
#include "workbench/bootstrap/sampled_results.h"
#include "workbench/output/labels.h"
#include "workbench/output/output_document.h"
#include "workbench/pooling/imputations.h"
#include "workbench/resampling/multinomial.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// Weights that the samples of a batch may take, all together; two batches are held at a time.
constexpr double kBatchWeights = 4e6;
constexpr int64_t kMostSamplesInBatch = 100;
/// Rows to read for all cases left out, beyond which BCa bounds would take too long.
constexpr double kMostLeftOutWork = 4e8;

using Samples = std::vector<std::vector<SampleWeights>>;

/// Runs the procedure on samples, into a document of its own.
class SampleRunner {
 public:
  SampleRunner(Session& session, const SampledCases& cases, const std::function<void()>& entry)
      : session_(session), cases_(cases), entry_(entry) {}

  /// Calls `take` with what the run shows.
  void run(const Samples& samples, const std::function<void(const DocumentProcedure&)>& take,
           const ProgressCallback& progress = {}) {
    ResampledDataset dataset(*session_.dataset, cases_, samples, progress);
    OutputDocument document;
    const Session before = session_;
    session_.dataset = &dataset;
    session_.document = &document;
    session_.observer = nullptr;
    session_.facts = nullptr;
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
  const SampledCases& cases_;
  const std::function<void()>& entry_;
};

/// Draws samples `first` to before `last` of every group, shared among the processors: each has a
/// stream of its own, so that it does not matter who draws it.
Samples drawSamples(const SampledCases& cases, uint64_t seed, int64_t first, int64_t last) {
  Samples samples(cases.groups.size());
  for (auto& group : samples) group.resize(static_cast<size_t>(last - first));
  const auto draw = [&](int64_t offset, int64_t step) {
    std::vector<int64_t> drawn;
    for (size_t group = 0; group < cases.groups.size(); ++group) {
      for (int64_t i = offset; i < last - first; i += step) {
        RandomStream random(seed, group, static_cast<uint64_t>(first + i));
        drawMultinomial(cases.groups[group].counts, random, drawn);
        samples[group][static_cast<size_t>(i)] = weightsOf(cases.groups[group], drawn);
      }
    }
  };
  const auto workers = static_cast<int64_t>(std::max(1U, std::thread::hardware_concurrency()));
  std::vector<std::jthread> others;
  for (int64_t i = 1; i < workers; ++i) others.emplace_back(draw, i, workers);
  draw(0, workers);
  return samples;
}

int64_t batchSize(const SampledCases& cases) {
  double rows = 1;
  for (const CaseGroup& group : cases.groups) rows += static_cast<double>(group.rows);
  return std::clamp<int64_t>(static_cast<int64_t>(kBatchWeights / rows), 1, kMostSamplesInBatch);
}

/// Draws batch after batch, the next one while the caller works on the last.
class BatchDrawer {
 public:
  struct Batch {
    int64_t first;  ///< number of its first sample
    Samples samples;
  };

  BatchDrawer(const SampledCases& cases, const BootstrapOptions& options)
      : cases_(cases), options_(options), size_(batchSize(cases)) {
    drawNext();
  }

  /// Nothing after the last one.
  std::optional<Batch> next() {
    if (!drawn_.valid()) return std::nullopt;
    Batch batch{first_, drawn_.get()};
    first_ += size_;
    drawNext();
    return batch;
  }

 private:
  void drawNext() {
    if (first_ > options_.samples) return;
    drawn_ = std::async(std::launch::async, drawSamples, std::cref(cases_), options_.seed, first_,
                        std::min(first_ + size_, options_.samples + 1));
  }

  const SampledCases& cases_;
  const BootstrapOptions& options_;
  int64_t size_;
  int64_t first_ = 1;
  std::future<Samples> drawn_;
};

std::optional<size_t> onlyTheData(int64_t sample) {
  return sample == 0 ? std::optional<size_t>(0) : std::nullopt;
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

/// The value of each result with one case left out; nothing when that would take too long.
std::optional<std::vector<std::vector<LeftOut>>> leaveOut(
    Session& session, const CommandFacts& facts, const SampledCases& cases,
    const SampledResults& results, SampleRunner& runner, const ProgressCallback& progress) {
  LeftOutCases leftOut(cases);
  const GroupFinder finder(cases, session.dataset->splitVariables());
  std::vector<const std::vector<LeftOutKind>*> kinds;
  for (const SampledResult& result : results.results()) {
    kinds.push_back(&leftOut.kinds(finder.groupOf(result),
                                   positionsOf(result, cases, facts, *session.dataset)));
    if (leftOut.work() > kMostLeftOutWork) return std::nullopt;
  }
  const Samples samples = leftOut.samples();
  size_t slots = 1;
  for (const auto& group : samples) slots = std::max(slots, group.size() + 1);
  SampledResults without(slots);
  runner.run(
      samples,
      [&](const DocumentProcedure& procedure) {
        without.add(procedure, [](int64_t sample) { return static_cast<size_t>(sample); });
      },
      progress);
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

void tellSamples(const ProgressCallback& progress, int64_t drawn, int64_t all) {
  if (!progress) return;
  progress(Phase::kSamples, 100.0 * static_cast<double>(drawn) / static_cast<double>(all), drawn);
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

void refuseBootstrapOf(const ActiveDataset& dataset) {
  for (VarIndex index = 0; index < dataset.variableCount(); ++index) {
    if (dataset.declaration(index).name == kSampleVariable) {
      throw DataError(std::string("--bootstrap: the data have a variable ") + kSampleVariable +
                      ", the name of the samples to be drawn; rename it, or leave --bootstrap "
                      "out to analyse the samples that it numbers.");
    }
  }
  if (const auto position = imputationPosition(dataset)) {
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
  SampleRunner runner(session, cases, entry);
  BootstrapFindings findings{options.samples, options.seed, 0, SampledResults(1), std::nullopt};
  const auto takeTheData = [&](const DocumentProcedure& procedure) {
    findings.results.add(procedure, onlyTheData);
  };
  const Samples none(cases.groups.size());
  runner.run(none, takeTheData);
  if (findings.results.results().empty()) return;
  refuseTooMany(options, findings.results.results().size());
  findings.results = SampledResults(static_cast<size_t>(options.samples) + 1);
  runner.run(none, takeTheData);
  BatchDrawer drawer(cases, options);
  findings.leftOut = leaveOut(session, facts, cases, findings.results, runner, progress);
  int64_t drawn = 0;
  tellSamples(progress, drawn, options.samples);
  while (const auto batch = drawer.next()) {
    runner.run(batch->samples, [&](const DocumentProcedure& procedure) {
      findings.messages += messagesAboutSamples(procedure);
      findings.results.add(procedure, [&](int64_t sample) -> std::optional<size_t> {
        if (sample == 0) return std::nullopt;
        return static_cast<size_t>(batch->first + sample - 1);
      });
    });
    drawn += static_cast<int64_t>(batch->samples.front().size());
    tellSamples(progress, drawn, options.samples);
  }
  addBootstrapTables(session, facts.level, findings);
}

}  // namespace workbench
