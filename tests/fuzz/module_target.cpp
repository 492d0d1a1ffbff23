// The module alone, on the host that records every call: generated data, commands and failures of
// the host. Nothing stays alive, nothing but an injected exception leaves the module, and the
// tables hold what can be.
#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <stdexcept>

#include "tests/fuzz/generated_command.h"
#include "tests/fuzz/target.h"
#include "tests/recording/host.h"
#include "tests/recording/output_document.h"

extern "C" void PROPORTI();

namespace {

using fuzz::Choices;
using fuzz::promise;
using recording::Script;
using recording::ScriptFault;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNumbers[] = {0,    1,         1, 0,     2,  kSystemMissing, 9, 0.5,
                               -0.0, kInfinity, 3, 1e300, -3, -kInfinity,     7, 1e-300};
constexpr double kWeights[] = {1, 1, 2, 0, 0.4, 0.5, 1.5, -1, kSystemMissing, 5, 4e12, 1e15, 1e300};
constexpr double kGroups[] = {1, 2, 0, 3, kSystemMissing};
constexpr const char* kTexts[] = {"yes", "no", "", "yes and no", "y"};
constexpr const char* kSplitNames[] = {"r", "$bootstrap_split", "Imputation_"};
constexpr const char* kFailing[] = {"MCDistFun.CdfBin",     "MCDistFun.CdfBinUpper",
                                    "MCDistFun.PdfBin",     "MCDistFun.IdfBeta",
                                    "MCDistFun.IdfStdNorm", "VarSpecObj.ValidateCatValue"};
constexpr const char* kAnswers[] = {"missing", "error", "0.5"};

void addVariables(Script& script, Choices& choices) {
  script.addNumeric("x", "A label");
  script.variables.back().missingNumbers = {9};
  script.addNumeric("y");
  script.addNumeric("g");
  script.addString("s", 10);
  script.variables.back().missingStrings = {"no"};
  const VarIndex weight = script.addNumeric("w");
  if (choices.flag()) script.weight = weight;
  const VarIndex split = script.addNumeric(choices.of(kSplitNames));
  const VarIndex region = script.addString("region", 10);
  if (choices.flag()) script.split.push_back(region);
  if (choices.flag()) script.split.push_back(split);
  script.separateSplitLayout = choices.below(4) == 3;
}

/// Groups end where the byte says so; a split data set always ends with a mark.
void addCases(Script& script, Choices& choices) {
  double sample = 0;
  const char* region = kTexts[0];
  for (size_t left = choices.below(24); left > 0; --left) {
    if (!script.split.empty() && choices.below(5) == 4) {
      script.addEndMark();
      sample = choices.of(kGroups);
      region = choices.of(kTexts);
    }
    script.addCase({choices.of(kNumbers), choices.of(kNumbers), choices.of(kGroups),
                    choices.of(kTexts), choices.of(kWeights), sample, region});
  }
  if (!script.split.empty()) script.addEndMark();
  script.chunkSize = 1 + static_cast<int64_t>(choices.below(9));
}

void addFailures(Script& script, Choices& choices) {
  if (choices.below(4) == 3) {
    const auto occurrence = static_cast<int64_t>(choices.below(4));  // 0: every call
    const std::string operation = choices.of(kFailing);
    const bool flag = operation.back() == 'e';  // ValidateCatValue answers yes or no
    script.answers.push_back({operation, occurrence, flag ? "false" : choices.of(kAnswers)});
  }
  if (choices.below(4) == 3) {
    ScriptFault fault;
    fault.what = static_cast<ScriptFault::What>(choices.below(3));
    const bool atCase = fault.what == ScriptFault::What::kFatalError && choices.flag();
    fault.at = atCase ? ScriptFault::At::kCase : ScriptFault::At::kCall;
    fault.k = 1 + static_cast<int64_t>(choices.below(256)) * (atCase ? 1 : 3);
    script.faults.push_back(fault);
  }
}

bool endsWith(const std::string& text, const std::string& ending) {
  return text.size() >= ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

/// `step` is the last label of the cell's place.
void checkCell(const std::string& place, double value, bool distributionsLie) {
  if (value == kSystemMissing || std::isnan(value)) return;
  const auto is = [&](const char* step) { return endsWith(place, step); };
  if (is("-Sided p\"") && !distributionsLie) {
    promise(value >= 0 && value <= 1, "a p value", place);
  }
  if (is("\"Proportion\"")) promise(value >= 0 && value <= 1, "a proportion", place);
  if (is("\"Lower\"") || is("\"Upper\"")) promise(std::fabs(value) <= 1, "a bound", place);
  if (is("\"Successes\"") || is("\"Trials\"")) promise(value >= 0, "a count", place);
  if (is("Standard Error\"")) promise(value >= 0, "a standard error", place);
}

/// Whether an exception may leave the run.
bool mayThrow(const Script& script) {
  return std::any_of(script.faults.begin(), script.faults.end(), [](const ScriptFault& fault) {
    return fault.what != ScriptFault::What::kFatalError;
  });
}

void run(const Script& script) {
  recording::Host host(script);
  bool thrown = false;
  try {
    PROPORTI();
  } catch (const std::bad_alloc&) {
    thrown = true;
  } catch (const std::runtime_error&) {
    thrown = true;
  }
  promise(!thrown || mayThrow(script), "no exception of the module's own", script.command);
  promise(recording::alive().empty(), "nothing stays alive", script.command);
  for (const auto& table : recording::currentOutput().tables) {
    for (const auto& [place, cell] : table->cells) {
      checkCell(place, cell.number, !script.answers.empty());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Choices choices(bytes, size);
  Script script;
  script.command = fuzz::commandFrom(choices);
  addVariables(script, choices);
  addFailures(script, choices);
  addCases(script, choices);
  run(script);
  return 0;
}
