// What the module does when anything it asks for fails: every allocation, every call of the host,
// every distribution function, at every place of a run, for every design with and without split
// groups. Nothing may stay alive, and the next run must be as if nothing had happened.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/recording/host.h"
#include "tests/recording/output_document.h"

extern "C" void PROPORTI();

namespace {

// The allocator of this program: counts, and fails once when told to.
int64_t allocations = 0;
int64_t failAt = 0;  // 0: never
bool failed = false;
int64_t liveBlocks = 0;
bool counting = false;

void* allocate(size_t size) {
  if (counting && !recording::allocationFaultsPaused() && ++allocations == failAt) {
    failed = true;
    throw std::bad_alloc();
  }
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  ++liveBlocks;
  return block;
}

void release(void* block) noexcept {
  if (block != nullptr) --liveBlocks;
  std::free(block);
}

}  // namespace

void* operator new(size_t size) { return allocate(size); }
void* operator new[](size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, size_t) noexcept { release(block); }
void operator delete[](void* block, size_t) noexcept { release(block); }

namespace {

using recording::Script;
using recording::ScriptAnswer;
using recording::ScriptFault;

enum class Ending { kReturned, kBadAlloc, kRuntimeError, kOther };

struct Outcome {
  Ending ending = Ending::kReturned;
  std::vector<std::string> transcript;
  std::string tables;
  std::vector<std::string> operations;
  std::vector<std::string> alive;
  int64_t calls = 0;
  int64_t allocations = 0;
  int64_t leakedBlocks = 0;
  int faultsInjected = 0;
  bool allocationFailed = false;
};

void readTranscript(recording::Host& host, Outcome& outcome) {
  outcome.tables = recording::tablesText();
  outcome.calls = host.calls();
  outcome.faultsInjected = host.faultsInjected();
  for (const recording::Entry& entry : host.transcript().entries()) {
    outcome.operations.push_back(entry.operation);
    outcome.transcript.push_back(entry.text);
  }
}

Ending callModule() {
  try {
    counting = true;
    PROPORTI();
    counting = false;
    return Ending::kReturned;
  } catch (const std::bad_alloc&) {
    counting = false;
    return Ending::kBadAlloc;
  } catch (const std::runtime_error&) {
    counting = false;
    return Ending::kRuntimeError;
  } catch (...) {
    counting = false;
    return Ending::kOther;
  }
}

/// Runs the module once; the k-th allocation of the run fails when `failingAllocation` is k.
Outcome run(const Script& script, int64_t failingAllocation = 0) {
  Outcome outcome;
  int64_t before = 0;
  int64_t after = 0;
  {
    // The report is read inside a block of its own, so that its memory is not counted as lost.
    const int64_t atStart = liveBlocks;
    {
      recording::Host host(script);
      recording::currentOutput();
      allocations = 0;
      failAt = failingAllocation;
      failed = false;
      outcome.ending = callModule();
      failAt = 0;
      outcome.allocations = allocations;
      outcome.allocationFailed = failed;
      before = liveBlocks;
      readTranscript(host, outcome);
      after = liveBlocks;
    }
    outcome.leakedBlocks = liveBlocks - atStart - (after - before);
  }
  outcome.alive = recording::alive();
  return outcome;
}

/// Every design meets a variable without trials, a group without valid cases and a string.
Script baseScript(bool split) {
  Script script;
  script.addNumeric("x", "Answer");
  script.addNumeric("y");
  script.addString("s", 10);
  script.addNumeric("g");
  script.addNumeric("w");
  script.weight = 4;
  if (split) script.split = {script.addNumeric("r")};
  script.chunkSize = 3;
  const auto add = [&](double x, double y, const char* s, double g, double w, double r) {
    std::vector<recording::Value> values{x, y, std::string(s), g, w};
    if (split) values.emplace_back(r);
    script.addCase(std::move(values));
  };
  for (int group = 0; group < (split ? 3 : 1); ++group) {
    const double dropped = group == 1 ? 0.0 : 1.0;
    add(1, 0, "yes", 1, 2 * dropped, group);
    add(0, 1, "no", 2, 1.4 * dropped, group);
    add(1, kSystemMissing, "a longer s", 1, 1 * dropped, group);
    add(0, 0, "yes", 2, 3 * dropped, group);
    add(0, 1, "no", 1, 1 * dropped, group);
    add(1, 0, "", 2, 2 * dropped, group);
    if (split) script.addEndMark();
  }
  return script;
}

struct Scenario {
  std::string name;
  Script script;  ///< a few methods: thousands of runs are made of it
  Script full;    ///< every method
};

struct Design {
  const char* name;
  const char* command;
  const char* methods;
  const char* success;
};

std::vector<Scenario> scenarios() {
  constexpr std::array<Design, 3> kDesigns{
      {{"one sample", "PROPORTIONS /ONESAMPLE x s x ",
        "TESTTYPES=MIDP WALD CITYPES=CLOPPER_PEARSON LOGIT", " /SUCCESS VALUE=FIRST"},
       {"paired", "PROPORTIONS /PAIREDSAMPLES x y WITH g x (PAIRED) ",
        "TESTTYPES=EXACT WALD CITYPES=NEWCOMBE", ""},
       {"independent", "PROPORTIONS /INDEPENDENTSAMPLES x y BY g SELECT=MIDPOINT ",
        "TESTTYPES=WALDH0 CITYPES=BROWN_LI_JEFFREYS", ""}}};
  std::vector<Scenario> all;
  for (const Design& design : kDesigns) {
    for (const char* layout : {"", ", split rows", ", split tables"}) {
      Script script = baseScript(*layout != '\0');
      script.separateSplitLayout = std::string(layout) == ", split tables";
      Script full = script;
      script.command = std::string(design.command) + design.methods + design.success;
      full.command = std::string(design.command) + "TESTTYPES=ALL CITYPES=ALL" + design.success;
      all.push_back({std::string(design.name) + layout, std::move(script), std::move(full)});
    }
  }
  return all;
}

/// The driver's own objects go in the reverse order of their making, the data source third from
/// last.
void expectReleaseOrder(const Outcome& outcome, const std::string& where) {
  std::vector<std::string> driver;
  const std::vector<std::string> whole{"ProcedureDataSource#1.delete",
                                       "ZELK_TokenSequence#1.delete", "BpProcedure#1.delete"};
  for (const std::string& entry : outcome.transcript) {
    if (std::find(whole.begin(), whole.end(), entry) != whole.end()) driver.push_back(entry);
  }
  ASSERT_LE(driver.size(), whole.size()) << where;
  const std::vector<std::string> made(whole.end() - static_cast<ptrdiff_t>(driver.size()),
                                      whole.end());
  EXPECT_EQ(driver, made) << where;
  if (!driver.empty()) {
    EXPECT_EQ(outcome.transcript.back(), driver.back()) << where;
  }
}

/// What must hold after every run, whatever happened in it.
void expectClean(const Outcome& outcome, const std::string& where) {
  EXPECT_EQ(outcome.alive, std::vector<std::string>()) << where;
  EXPECT_EQ(outcome.leakedBlocks, 0) << where;
  expectReleaseOrder(outcome, where);
}

/// Notes the object that an entry makes or releases, in the order of their making. A label's life
/// is that of an expression; the map of split values is made for the store, after the first group,
/// and goes with it.
void noteLife(const std::string& entry, std::vector<std::string>& alive) {
  const auto endsWith = [&entry](const std::string& ending) {
    return entry.size() > ending.size() &&
           entry.compare(entry.size() - ending.size(), ending.size(), ending) == 0;
  };
  const size_t made = entry.find(".new(");
  if (endsWith(".delete")) {
    const auto found = std::find(alive.begin(), alive.end(), entry.substr(0, entry.size() - 7));
    if (found != alive.end()) alive.erase(found);
  } else if (made != std::string::npos && !endsWith(" throws")) {
    alive.push_back(entry.substr(0, made));
  } else if (const size_t iterator = entry.find("= ProcDSIterator#");
             iterator != std::string::npos) {
    alive.push_back(entry.substr(iterator + 2));
  }
}

/// The driver's objects, the iterators and those of the groups go last made first.
void expectReverseOrder(const std::vector<std::string>& before,
                        const std::vector<std::string>& released, const std::string& where) {
  std::vector<std::string> alive;
  for (const std::string& entry : before) noteLife(entry, alive);
  for (const std::string& entry : released) {
    if (entry.compare(0, 9, "ObsVecMap") == 0) continue;
    while (!alive.empty() && alive.back().compare(0, 9, "ObsVecMap") == 0) alive.pop_back();
    const std::string name = entry.substr(0, entry.size() - 7);
    if (std::find(alive.begin(), alive.end(), name) == alive.end()) continue;
    EXPECT_EQ(name, alive.back()) << where;
    noteLife(entry, alive);
  }
}

/// A run that an exception ended: up to there it did what it always does, and from there on it only
/// released things, last made first.
void expectUnwound(const Outcome& outcome, const Outcome& undisturbed, const std::string& where) {
  const auto& lines = outcome.transcript;
  const auto& usual = undisturbed.transcript;
  const auto [end, usualEnd] =
      std::mismatch(lines.begin(), lines.end(), usual.begin(), usual.end());
  for (auto line = end; line != lines.end(); ++line) {
    const bool thrown =
        line == end && line->size() > 7 && line->compare(line->size() - 7, 7, " throws") == 0;
    const bool deleted = line->size() > 7 && line->compare(line->size() - 7, 7, ".delete") == 0;
    EXPECT_TRUE(thrown || deleted) << where << " calls " << *line;
  }
  const bool thrown = end != lines.end() && end->find(" throws") != std::string::npos;
  expectReverseOrder({lines.begin(), end}, {thrown ? end + 1 : end, lines.end()}, where);
}

/// The runs between show as much up to their fault.
constexpr int64_t kWholeRunEvery = 50;

void expectUndisturbed(const Scenario& scenario, const Outcome& undisturbed,
                       const std::string& where) {
  const Outcome again = run(scenario.script);
  ASSERT_EQ(again.ending, Ending::kReturned) << where;
  ASSERT_EQ(again.transcript, undisturbed.transcript) << where;
  expectClean(again, where);
}

class Faults : public testing::TestWithParam<size_t> {
 protected:
  static Script withFault(Script script, ScriptFault::What what, int64_t call) {
    script.faults.push_back({what, ScriptFault::At::kCall, "", call});
    return script;
  }
  void SetUp() override {
    scenario_ = scenarios().at(GetParam());
    undisturbed_ = run(scenario_.script);
    ASSERT_EQ(undisturbed_.ending, Ending::kReturned);
    ASSERT_NE(undisturbed_.tables, "");
    expectClean(undisturbed_, "undisturbed");
  }
  void report(const char* what, int64_t injected) const {
    std::printf("%s: %lld %s injected and survived\n", scenario_.name.c_str(),
                static_cast<long long>(injected), what);
  }

  Scenario scenario_;
  Outcome undisturbed_;
};

TEST_P(Faults, EveryAllocationMayFail) {
  int64_t injected = 0;
  for (int64_t k = 1; k <= undisturbed_.allocations && !HasFailure(); ++k) {
    const std::string where = scenario_.name + ", allocation " + std::to_string(k);
    const Outcome outcome = run(scenario_.script, k);
    ASSERT_TRUE(outcome.allocationFailed) << where;
    ++injected;
    // A failure may be absorbed where memory is only a matter of speed; then nothing may differ.
    if (outcome.ending == Ending::kReturned) {
      EXPECT_EQ(outcome.transcript, undisturbed_.transcript) << where;
    } else {
      EXPECT_EQ(outcome.ending, Ending::kBadAlloc) << where;
      expectUnwound(outcome, undisturbed_, where);
    }
    expectClean(outcome, where);
    if (k % kWholeRunEvery == 0) expectUndisturbed(scenario_, undisturbed_, where);
  }
  expectUndisturbed(scenario_, undisturbed_, scenario_.name);
  EXPECT_EQ(injected, undisturbed_.allocations);
  report("failing allocations", injected);
}

TEST_P(Faults, EveryCallMayThrow) {
  int64_t injected = 0;
  for (int64_t k = 1; k <= undisturbed_.calls && !HasFailure(); ++k) {
    for (const auto what : {ScriptFault::What::kBadAlloc, ScriptFault::What::kRuntimeError}) {
      const std::string where = scenario_.name + ", call " + std::to_string(k);
      const Outcome outcome = run(withFault(scenario_.script, what, k));
      // Distribution and text functions do not throw; the fault passes them by.
      if (outcome.faultsInjected == 0) {
        EXPECT_EQ(outcome.transcript, undisturbed_.transcript) << where;
      } else {
        EXPECT_EQ(outcome.ending,
                  what == ScriptFault::What::kBadAlloc ? Ending::kBadAlloc : Ending::kRuntimeError)
            << where;
        expectUnwound(outcome, undisturbed_, where);
        ++injected;
      }
      expectClean(outcome, where);
    }
    if (k % kWholeRunEvery == 0) expectUndisturbed(scenario_, undisturbed_, scenario_.name);
  }
  expectUndisturbed(scenario_, undisturbed_, scenario_.name);
  EXPECT_GT(injected, 0);
  report("throwing calls", injected);
}

TEST_P(Faults, FatalErrorMayRiseAtEveryCall) {
  int64_t injected = 0;
  const auto chunks = std::count(undisturbed_.operations.begin(), undisturbed_.operations.end(),
                                 "ProcDSIterator.NextChunk");
  for (int64_t k = 1; k <= undisturbed_.calls && !HasFailure(); ++k) {
    const std::string where = scenario_.name + ", fatal error at call " + std::to_string(k);
    const Outcome outcome = run(withFault(scenario_.script, ScriptFault::What::kFatalError, k));
    ASSERT_EQ(outcome.faultsInjected, 1) << where;
    ++injected;
    EXPECT_EQ(outcome.ending, Ending::kReturned) << where;
    expectClean(outcome, where);
    const auto count = [&](const char* operation) {
      return std::count(outcome.operations.begin(), outcome.operations.end(), operation);
    };
    EXPECT_EQ(count("BEPesRepos.BEPesCheckError"), count("BEPesRepos.BEPesClear")) << where;
    // What is not read any more is not asked for either.
    EXPECT_LE(count("ProcedureDataSource.MakeIterator"), 2) << where;
    EXPECT_LE(count("ProcDSIterator.NextChunk"), chunks) << where;
    if (k % kWholeRunEvery == 0) expectUndisturbed(scenario_, undisturbed_, where);
  }
  expectUndisturbed(scenario_, undisturbed_, scenario_.name);
  report("fatal errors", injected);
}

TEST_P(Faults, ReadingMayEndAtEveryCase) {
  int64_t cases = 0;
  for (const recording::ScriptRow& row : scenario_.script.rows) {
    if (row.kind == recording::ScriptRow::Kind::kCase) ++cases;
  }
  int64_t injected = 0;
  for (int64_t k = 1; k <= 2 * cases && !HasFailure(); ++k) {  // both passes
    const std::string where = scenario_.name + ", read error at case " + std::to_string(k);
    Script script = scenario_.script;
    script.faults.push_back({ScriptFault::What::kFatalError, ScriptFault::At::kCase, "", k});
    const Outcome outcome = run(script);
    EXPECT_EQ(outcome.faultsInjected, 1) << where;
    ++injected;
    EXPECT_EQ(outcome.ending, Ending::kReturned) << where;
    expectClean(outcome, where);
    expectUndisturbed(scenario_, undisturbed_, where);
  }
  report("read errors", injected);
}

/// Cells that hold no value and do not say so, and cells that say so and hold one.
std::vector<std::string> cellsWithWrongNote(const std::string& tables) {
  std::vector<std::string> wrong;
  size_t begin = 0;
  while (begin < tables.size()) {
    const size_t end = tables.find('\n', begin);
    const std::string line = tables.substr(begin, end - begin);
    begin = end + 1;
    const bool isMissing = line.find(": missing ") != std::string::npos;
    const bool saysSo = line.find("{\"Stat miss not enough cases") != std::string::npos;
    if (isMissing != saysSo) wrong.push_back(line);
  }
  return wrong;
}

TEST_P(Faults, EveryDistributionCallMayFail) {
  int64_t injected = 0;
  const Outcome full = run(scenario_.full);
  EXPECT_EQ(cellsWithWrongNote(full.tables), std::vector<std::string>());
  for (const char* function :
       {"CdfBin", "CdfBinUpper", "PdfBin", "IdfBeta", "IdfBetaUpper", "CdfStdNorm"}) {
    const std::string operation = std::string("MCDistFun.") + function;
    const auto calls =
        std::count(undisturbed_.operations.begin(), undisturbed_.operations.end(), operation);
    for (int64_t k = 1; k <= calls && !HasFailure(); ++k) {
      const bool hasFlag = operation.find("Bin") != std::string::npos;
      for (const char* how : {"missing", "error"}) {
        if (!hasFlag && std::string(how) == "error") continue;
        const std::string where =
            scenario_.name + ", " + operation + " " + std::to_string(k) + " " + how;
        Script script = scenario_.full;
        script.answers.push_back({operation, k, how});
        const Outcome outcome = run(script);
        ++injected;
        EXPECT_EQ(outcome.ending, Ending::kReturned) << where;
        EXPECT_NE(outcome.tables, full.tables) << where;
        EXPECT_EQ(cellsWithWrongNote(outcome.tables), std::vector<std::string>()) << where;
        expectClean(outcome, where);
      }
    }
  }
  report("failing distribution calls", injected);
}

std::string nameOfScenario(const testing::TestParamInfo<size_t>& scenario) {
  std::string name = scenarios().at(scenario.param).name;
  const auto isSeparator = [](char letter) { return letter == ' ' || letter == ','; };
  name.erase(std::remove_if(name.begin(), name.end(), isSeparator), name.end());
  return name;
}

INSTANTIATE_TEST_SUITE_P(Designs, Faults, testing::Range<size_t>(0, 9), nameOfScenario);

}  // namespace
