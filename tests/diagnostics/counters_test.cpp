// What only a dump shows of a run: counters, extremes that no label needs, and the end of each
// design's run.
#include <gtest/gtest.h>

#include "tests/diagnostics/dumped_run.h"
#include "tests/recording/script_text.h"

namespace diagnostics {
namespace {

/// The lines of a run's dumps whose label is one of these, in order.
std::vector<std::string> dumped(const std::string& test, const std::vector<std::string>& labels) {
  std::vector<std::string> found;
  for (const std::string& line : runWithDumps(recording::readTest(test).script).display) {
    for (const std::string& label : labels) {
      if (line.find(" " + label + " = ") != std::string::npos) found.push_back(line);
    }
  }
  return found;
}

TEST(Counters, CasesThatAreNotUsedAreWeightedToo) {
  const std::string test = R"(
variables:
  x numeric
  w numeric
weight: w
cases:
  1 2
  . 3
  0 0.25
  . 1.5
command: PROPORTIONS /ONESAMPLE x /MISSING SCOPE=LISTWISE.
)";
  EXPECT_EQ(dumped(test, {"Number of invalid cases", "Weighted number of all cases",
                          "Weighted number of valid cases", "Weighted number of invalid cases"}),
            linesOf(R"(
    I Number of invalid cases = 3
    D Weighted number of all cases = 7
    D Weighted number of valid cases = 2
    D Weighted number of invalid cases = 5
  )"));
}

TEST(Counters, AGroupWithoutValidCasesHasEndedItsFirstPass) {
  const std::string test = R"(
variables:
  x numeric
  y numeric
  r numeric
split: r
cases:
  1 . 1
  --
  1 0 2
  0 1 2
  --
command: PROPORTIONS /ONESAMPLE x y /MISSING SCOPE=LISTWISE.
)";
  EXPECT_EQ(dumped(test, {"Initial data pass indicator", "Good Data indicator",
                          "Number of valid cases", "Has valid value flag"}),
            linesOf(R"(
    B Initial data pass indicator = false
    B Good Data indicator = false
    I Number of valid cases = 0
    B Has valid value flag = false
    B Has valid value flag = false
    B Good Data indicator = true
    B Good Data indicator = true
    B Initial data pass indicator = false
    B Good Data indicator = true
    I Number of valid cases = 2
    B Has valid value flag = true
    B Has valid value flag = true
    B Good Data indicator = true
    B Good Data indicator = true
  )"));
}

TEST(Counters, AStringGroupingHasExtremesToo) {
  const std::string test = R"(
variables:
  x numeric
  s string 3
cases:
  1 "b"
  0 "c"
  1 "a"
  0 "b"
command: PROPORTIONS /INDEPENDENTSAMPLES x BY s SELECT=LEVEL('b' 'c').
)";
  EXPECT_EQ(dumped(test, {"Has valid value flag", "Minimum string value", "Maximum string value",
                          "Middle point"}),
            linesOf(R"(
    B Has valid value flag = true
    D Middle point = 0.5
    S Minimum string value = ""
    S Maximum string value = ""
    B Has valid value flag = true
    D Middle point = missing
    S Minimum string value = "a"
    S Maximum string value = "c"
  )"));
}

TEST(Counters, TheGroupElementOfLevelsHoldsNumbersTextsAndItsLength) {
  const std::string test = R"(
variables:
  x numeric
  s string 12
  g numeric
cases:
  1 "b" 1
command: PROPORTIONS /INDEPENDENTSAMPLES x BY VARIABLE.
)";
  const auto element = [&test](const std::string& variable) {
    std::string text = test;
    text.replace(text.find("VARIABLE"), 8, variable);
    std::vector<std::string> lines =
        dumped(text, {"Binomial Option", "Categorical Variable", "Numeric Values", "String Values",
                      "OBS length"});
    // Of three elements the group's is the second.
    return lines.size() == 15 ? std::vector<std::string>(lines.begin() + 5, lines.begin() + 10)
                              : lines;
  };
  EXPECT_EQ(element("s SELECT=LEVEL('b' 'c')"), linesOf(R"(
    S Binomial Option = "Category Levels"
    B Categorical Variable = true
    DV Numeric Values = [missing, missing]
    SV String Values = ["b", "c"]
    I OBS length = 2
  )"));
  EXPECT_EQ(element("g"), linesOf(R"(
    S Binomial Option = "Category Levels"
    B Categorical Variable = false
    DV Numeric Values = [1, 2]
    SV String Values = ["1", "2"]
    I OBS length = 1
  )"));
}

TEST(Counters, EveryDesignTellsThatItsRunIsComplete) {
  for (const char* command :
       {"ONESAMPLE x", "PAIREDSAMPLES x WITH y", "INDEPENDENTSAMPLES x BY y"}) {
    for (const bool any : {true, false}) {
      recording::Script script;
      script.addNumeric("x");
      script.addNumeric("y");
      const double value = any ? 1.0 : kSystemMissing;
      script.addCase({value, 1.0});
      script.addCase({value, 2.0});
      script.command = std::string("PROPORTIONS /") + command + ".";
      // The self test follows each run that has an outcome.
      EXPECT_EQ(runWithDumps(script).standardOutput.empty(), !any) << command;
    }
  }
}

}  // namespace
}  // namespace diagnostics
