// The two passes of the module over cases in memory, beside a plain loop that reads and sums the
// same columns. Time per value and pass is the inverse of items per second.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "module/driver/proporti.h"
#include "workbench/catalogue/catalogue.h"
#include "workbench/dataset/memory_dataset.h"
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

void runModule(benchmark::State& state, const char* command) {
  workbench::MemoryDataset dataset;
  for (int v = 0; v < kVariables; ++v) dataset.addNumbers("v" + std::to_string(v), column(v));
  const workbench::Catalogue catalogue = workbench::Catalogue::english();
  const auto commands = workbench::splitCommands(command);
  for (auto _ : state) {
    workbench::OutputDocument document;
    workbench::Session session;
    session.dataset = &dataset;
    session.document = &document;
    session.catalogue = &catalogue;
    session.command = &commands.front();
    const workbench::SessionScope scope(session);
    document.beginProcedure("Proportions", command);
    PROPORTI();
    document.finishProcedure(&dataset);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kRows) * kVariables * 2);
}

void last(benchmark::State& state) {
  runModule(state, "PROPORTIONS /ONESAMPLE ALL TESTTYPES=NONE CITYPES=WALD.");
}
void level(benchmark::State& state) {
  runModule(state,
            "PROPORTIONS /ONESAMPLE ALL TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL(1).");
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

BENCHMARK(last)->Unit(benchmark::kMillisecond);
BENCHMARK(level)->Unit(benchmark::kMillisecond);
BENCHMARK(plainLoop)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
