// The module over cases in memory, beside a plain loop that reads and sums the same columns: the
// extremes and the classification of every case, and the whole run with reading, counting and
// tables. Time per value and pass is the inverse of items per second.
#include <benchmark/benchmark.h>

#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "module/data/case_reader.h"
#include "module/driver/proporti.h"
#include "module/model/algorithm.h"
#include "tests/memory/memory_dataset.h"
#include "workbench/catalogue/catalogue.h"
#include "workbench/output/output_document.h"
#include "workbench/parser/command_text.h"
#include "workbench/session/session.h"

namespace {

constexpr size_t kRows = 200000;
constexpr int kVariables = 8;

std::vector<double> column(int seed) {
  std::vector<double> values(kRows);
  uint64_t state = 977u * static_cast<uint64_t>(seed + 1);
  for (double& value : values) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    value = static_cast<double>(state >> 63);
  }
  return values;
}

/// What a run of the module needs: data, a document and the session that offers them.
class Bench {
 public:
  explicit Bench(const char* command) : commands_(workbench::splitCommands(command)) {
    for (int v = 0; v < kVariables; ++v) dataset_.addNumbers("v" + std::to_string(v), column(v));
    session_.dataset = &dataset_;
    session_.document = &document_;
    session_.catalogue = &catalogue_;
    session_.command = &commands_.front();
    document_.beginProcedure("Proportions", command);
  }
  workbench::OutputDocument& document() { return document_; }
  workbench::MemoryDataset& dataset() { return dataset_; }

 private:
  workbench::MemoryDataset dataset_;
  workbench::OutputDocument document_;
  workbench::Catalogue catalogue_ = workbench::Catalogue::english();
  std::vector<workbench::CommandTokens> commands_;
  workbench::Session session_;
  workbench::SessionScope scope_{session_};
};

void countValues(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kRows) * kVariables * 2);
}

void readAll(proportions::PRPAlgorithm& analysis) {
  const std::unique_ptr<ZELK_InputCaseIterator> iterator(analysis.dataSource->MakeIterator());
  proportions::CaseReader reader(analysis, static_cast<ProcDSIterator&>(*iterator));
  proportions::UsedCase used;
  while (reader.nextUsedCase(used)) benchmark::DoNotOptimize(used.first.data());
}

void classify(benchmark::State& state, const proportions::BinInfoElem& definition) {
  const Bench bench("PROPORTIONS.");
  ProcedureDataSource source;
  BpProcedure procedure("Proportions", 10);
  proportions::PRPValidSpecs specs(source);
  std::vector<VarIndex> indices(kVariables);
  std::iota(indices.begin(), indices.end(), 0);
  specs.setTestVarIndices(indices);
  specs.testVarInfo().assign(kVariables, definition);
  proportions::PRPAlgorithm analysis(source, procedure, specs);
  for (int v = 0; v < kVariables; ++v) {
    analysis.testVarCats.push_back(std::make_unique<proportions::VarCatInfo>());
  }
  for (auto _ : state) {
    analysis.initialDataPass = true;
    readAll(analysis);
    analysis.initialDataPass = false;
    readAll(analysis);
  }
  countValues(state);
}

void classifyLast(benchmark::State& state) { classify(state, {}); }
void classifyLevel(benchmark::State& state) {
  proportions::BinInfoElem level;
  level.rule = proportions::SuccessRule::kLevels;
  level.numericValues = {1.0};
  classify(state, level);
}

void run(benchmark::State& state, const char* command) {
  Bench bench(command);
  for (auto _ : state) {
    PROPORTI();
  }
  bench.document().finishProcedure(&bench.dataset());
  countValues(state);
}

void runLast(benchmark::State& state) {
  run(state, "PROPORTIONS /ONESAMPLE ALL TESTTYPES=NONE CITYPES=WALD.");
}
void runLevel(benchmark::State& state) {
  run(state, "PROPORTIONS /ONESAMPLE ALL TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL(1).");
}

void plainLoop(benchmark::State& state) {
  std::vector<std::vector<double>> columns;
  for (int v = 0; v < kVariables; ++v) columns.push_back(column(v));
  for (auto _ : state) {
    double sums[kVariables] = {};
    for (size_t row = 0; row < kRows; ++row) {
      for (int v = 0; v < kVariables; ++v) sums[v] += columns[static_cast<size_t>(v)][row];
    }
    benchmark::DoNotOptimize(sums);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kRows) * kVariables);
}

BENCHMARK(classifyLast)->Unit(benchmark::kMillisecond);
BENCHMARK(classifyLevel)->Unit(benchmark::kMillisecond);
BENCHMARK(runLast)->Unit(benchmark::kMillisecond);
BENCHMARK(runLevel)->Unit(benchmark::kMillisecond);
BENCHMARK(plainLoop)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
