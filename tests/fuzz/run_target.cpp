// Generated data and a generated command: whatever they are, the run ends well, what it shows is
// possible, and the order of the cases changes nothing.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/fuzz/generated_command.h"
#include "tests/fuzz/target.h"
#include "tests/fuzz/workbench_run.h"

namespace {

using fuzz::Choices;

/// What an input is used for. Most are for the numbers; documents of any kind are written
/// elsewhere.
enum class Check { kValues, kOrder, kRendering };
constexpr Check kChecks[] = {Check::kValues, Check::kValues, Check::kValues, Check::kValues,
                             Check::kValues, Check::kValues, Check::kOrder,  Check::kRendering};

constexpr double kNumbers[] = {0, 1, 1, 0, 2, -0.0, 9, kSystemMissing, 0.5, 1e300, -3, NAN, 1e-300};
/// None for which up to a million terms are added: those few milliseconds belong to the tests of
/// the methods.
constexpr double kWeights[] = {1, 1,   2,    0,    0.4,   0.5,   1.5,  -1, kSystemMissing,
                               5, 300, 4e12, 1e15, 1e100, 1e300, 1e308};
/// With weights up to here every sum is exact.
constexpr double kLargeWeight = 1e13;
constexpr const char* kTexts[] = {"yes",  "no",       "",          "Yes",
                                  " yes", "\xC3\xA9", "long text", "=1+1,\"\n<b>"};
constexpr const char* kSplitNames[] = {"r", "$bootstrap_split", "Imputation_", "$BOOTSTRAP_SPLIT"};

/// A data set that can be made twice, the second time with its cases in reverse.
struct Plan {
  std::vector<std::vector<double>> numbers;  // x, y, g
  std::vector<std::string> texts;
  std::vector<double> weights;
  std::vector<double> splits;
  std::vector<std::string> textSplits;
  const char* splitName = "r";
  bool weighted = false;
  bool split = false;
  bool textSplit = false;
  bool separate = false;
  int64_t chunk = 1;
};

Plan planOf(Choices& choices) {
  Plan plan;
  const size_t cases = choices.below(12);
  plan.weighted = choices.flag();
  plan.split = choices.below(4) == 3;
  plan.textSplit = plan.split && choices.flag();
  plan.separate = choices.flag();
  plan.splitName = choices.of(kSplitNames);
  plan.chunk = 1 + static_cast<int64_t>(choices.below(7));
  plan.numbers.resize(3);
  for (size_t i = 0; i < cases; ++i) {
    for (std::vector<double>& column : plan.numbers) column.push_back(choices.of(kNumbers));
    plan.texts.emplace_back(choices.of(kTexts));
    plan.weights.push_back(choices.of(kWeights));
    plan.splits.push_back(kNumbers[choices.below(5)]);
    plan.textSplits.emplace_back(kTexts[choices.below(3)]);
  }
  return plan;
}

template <typename T>
std::vector<T> ordered(std::vector<T> values, bool reversed) {
  if (reversed) std::reverse(values.begin(), values.end());
  return values;
}

workbench::Variable named(const char* name) {
  workbench::Variable variable;
  variable.name = name;
  return variable;
}

void fill(workbench::MemoryDataset& data, const Plan& plan, bool reversed) {
  workbench::Variable x = named("x");
  x.label = "A label of x";
  x.missingNumbers = {9};
  x.numberLabels = {{1, "Yes"}, {0, "No"}};
  data.addNumbers(x, ordered(plan.numbers[0], reversed));
  data.addNumbers("y", ordered(plan.numbers[1], reversed));
  data.addNumbers("g", ordered(plan.numbers[2], reversed));
  workbench::Variable s = named("s");
  s.missingStrings = {"no"};
  data.addStrings(s, ordered(plan.texts, reversed));
  const VarIndex w = data.addNumbers("w", ordered(plan.weights, reversed));
  const VarIndex split = data.addNumbers(plan.splitName, ordered(plan.splits, reversed));
  const VarIndex textSplit = data.addStrings("region", ordered(plan.textSplits, reversed));
  if (plan.weighted) data.setWeight(w);
  if (plan.split) {
    data.setSplit(plan.textSplit ? std::vector<VarIndex>{textSplit, split}
                                 : std::vector<VarIndex>{split});
  }
  data.setSeparateSplitLayout(plan.separate);
  data.setChunkSize(plan.chunk);
}

std::string outputOf(const Plan& plan, const std::string& command, bool reversed) {
  workbench::MemoryDataset data;
  fill(data, plan, reversed);
  return fuzz::renderCommands(data, command, workbench::Format::kCsv);
}

/// What two texts have at the first place where they differ, with something before it.
std::string firstDifference(const std::string& a, const std::string& b) {
  const auto place = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin();
  const size_t from = place < 200 ? 0 : static_cast<size_t>(place) - 200;
  return a.substr(from, 400) + "\n  and\n" + b.substr(from, 400);
}

/// With larger weights the last digits of the sums depend on their order.
bool sumsAreExact(const Plan& plan) {
  return !plan.weighted || std::none_of(plan.weights.begin(), plan.weights.end(),
                                        [](double weight) { return weight > kLargeWeight; });
}

void checkOrder(const Plan& plan, const std::string& command) {
  if (!sumsAreExact(plan)) return;
  const std::string once = outputOf(plan, command, false);
  const std::string again = outputOf(plan, command, true);
  fuzz::promise(once == again, "the order of the cases changes nothing",
                firstDifference(once, again));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Choices choices(bytes, size);
  const Check check = choices.of(kChecks);
  const workbench::Format format = choices.of(fuzz::kFormats);
  const std::string command = fuzz::commandFrom(choices);
  const Plan plan = planOf(choices);
  if (check == Check::kOrder) {
    checkOrder(plan, command);
    return 0;
  }
  workbench::MemoryDataset data;
  fill(data, plan, false);
  if (check == Check::kValues) fuzz::checkCommands(data, command);
  if (check == Check::kRendering) fuzz::renderCommands(data, command, format);
  return 0;
}
