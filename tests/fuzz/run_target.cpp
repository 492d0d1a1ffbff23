// Generated data and a generated command: whatever they are, the run ends well, and the order of
// the cases changes nothing.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/fuzz/target.h"
#include "tests/fuzz/workbench_run.h"

namespace {

using fuzz::Choices;

constexpr double kNumbers[] = {0, 1, 1, 0, 2, -0.0, 9, kSystemMissing, 0.5, 1e300, -3, NAN, 1e-300};
constexpr double kWeights[] = {1,    1,   2, 0,    0.4,  0.5,   1.5,   -1,   kSystemMissing,
                               1000, 1e6, 5, 1e11, 1e15, 1e100, 1e300, 1e308};
/// With weights up to here every sum is exact.
constexpr double kLargeWeight = 1e12;
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
  const size_t cases = choices.below(40);
  plan.weighted = choices.flag();
  plan.split = choices.flag();
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

std::string runPlan(const Plan& plan, const std::string& command, bool reversed) {
  workbench::MemoryDataset data;
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
  return reversed ? fuzz::runCommands(data, command) : fuzz::checkCommands(data, command);
}

/// What two texts have at the first place where they differ, with something before it.
std::string firstDifference(const std::string& a, const std::string& b) {
  const auto place = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin();
  const size_t from = place < 200 ? 0 : static_cast<size_t>(place) - 200;
  return a.substr(from, 400) + "\n  and\n" + b.substr(from, 400);
}

constexpr const char* kDesigns[] = {"/ONESAMPLE x y s",
                                    "/ONESAMPLE x TESTVAL=0.9",
                                    "/PAIREDSAMPLES x y g",
                                    "/PAIREDSAMPLES x y WITH y s",
                                    "/PAIREDSAMPLES x s WITH y g (PAIRED)",
                                    "/INDEPENDENTSAMPLES x y BY g",
                                    "/INDEPENDENTSAMPLES x BY g SELECT=MIDPOINT",
                                    "/INDEPENDENTSAMPLES x y BY g SELECT=CUTPOINT(1)",
                                    "/INDEPENDENTSAMPLES x BY s SELECT=LEVEL('yes' 'no')",
                                    "/INDEPENDENTSAMPLES x BY g SELECT=LEVEL(0 1)"};
constexpr const char* kMethods[] = {"", " TESTTYPES=ALL CITYPES=ALL",
                                    " TESTTYPES=NONE CITYPES=WALD",
                                    " TESTTYPES=WALDCC CITYPES=NONE"};
constexpr const char* kSuccess[] = {"",
                                    " /SUCCESS VALUE=FIRST",
                                    " /SUCCESS VALUE=MIDPOINT",
                                    " /SUCCESS VALUE=CUTPOINT(0.5)",
                                    " /SUCCESS VALUE=LEVEL(1)",
                                    " /SUCCESS VALUE=LEVEL(0 2)"};
constexpr const char* kMissing[] = {"", " /MISSING SCOPE=LISTWISE", " /MISSING USERMISSING=INCLUDE",
                                    " /MISSING SCOPE=LISTWISE USERMISSING=INCLUDE"};
constexpr const char* kCriteria[] = {"", " /CRITERIA CILEVEL=0", " /CRITERIA CILEVEL=99.9999999999",
                                     " /CRITERIA CILEVEL=50"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Choices choices(bytes, size);
  std::string command = "PROPORTIONS ";
  command += choices.of(kDesigns);
  command += choices.of(kMethods);
  command += choices.of(kSuccess);
  command += choices.of(kMissing);
  command += choices.of(kCriteria);
  command += ".";
  const Plan plan = planOf(choices);
  const std::string once = runPlan(plan, command, false);
  const auto isLarge = [](double weight) { return weight > kLargeWeight; };
  if (plan.weighted && std::any_of(plan.weights.begin(), plan.weights.end(), isLarge)) {
    return 0;  // the last digits of the sums depend on their order
  }
  const std::string again = runPlan(plan, command, true);
  fuzz::promise(once == again, "the order of the cases changes nothing",
                firstDifference(once, again));
  return 0;
}
