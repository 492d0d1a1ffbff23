// When a record counts as good and as complete: no table shows the flags, the dumps do.
#include <gtest/gtest.h>

#include "tests/diagnostics/dumped_run.h"

namespace diagnostics {
namespace {

/// A flag of each statistics record, in order.
std::vector<bool> recordFlags(const recording::Script& script, const std::string& label) {
  std::vector<bool> flags;
  bool inRecord = false;
  for (const std::string& line : runWithDumps(script).display) {
    if (line.rfind("PropZ", 0) == 0) inRecord = line.find("start") != std::string::npos;
    if (inRecord && line.rfind("B " + label, 0) == 0) {
      flags.push_back(line.find("true") != std::string::npos);
    }
  }
  return flags;
}

std::vector<bool> completeRecords(const recording::Script& script) {
  return recordFlags(script, "Complete Data indicator");
}

TEST(RecordFlags, ACompleteOneSampleHasBothOutcomes) {
  recording::Script script;
  for (const char* name : {"both", "successes", "failures", "nothing"}) script.addNumeric(name);
  script.addCase({1.0, 1.0, 0.0, kSystemMissing});
  script.addCase({0.0, 1.0, 0.0, kSystemMissing});
  script.command =
      "PROPORTIONS /ONESAMPLE both successes failures nothing /SUCCESS VALUE=LEVEL(1).";
  // A record without trials keeps the flag that it was made with.
  EXPECT_EQ(completeRecords(script), (std::vector<bool>{true, false, false, true}));
}

std::vector<bool> completePair(int both, int first, int second, int neither) {
  recording::Script script;
  script.addNumeric("a");
  script.addNumeric("b");
  script.addNumeric("c");
  if (both > 0) script.addCase({1.0, 1.0, kSystemMissing}, both);
  if (first > 0) script.addCase({1.0, 0.0, kSystemMissing}, first);
  if (second > 0) script.addCase({0.0, 1.0, kSystemMissing}, second);
  if (neither > 0) script.addCase({0.0, 0.0, kSystemMissing}, neither);
  script.command = "PROPORTIONS /PAIREDSAMPLES a WITH b c /SUCCESS VALUE=LEVEL(1).";
  return completeRecords(script);
}

TEST(RecordFlags, ACompletePairHasDiscordantCasesAndSuccessesInBoth) {
  // The second pair has no observations and keeps the flag that it was made with.
  EXPECT_EQ(completePair(3, 2, 1, 4), (std::vector<bool>{true, true}));
  EXPECT_EQ(completePair(1, 0, 1, 0), (std::vector<bool>{true, true}));
  EXPECT_EQ(completePair(3, 0, 0, 4), (std::vector<bool>{false, true})) << "none is discordant";
  EXPECT_EQ(completePair(0, 3, 0, 4), (std::vector<bool>{false, true})) << "never the second";
  EXPECT_EQ(completePair(0, 0, 3, 4), (std::vector<bool>{false, true})) << "never the first";
  EXPECT_EQ(completePair(0, 3, 0, 0), (std::vector<bool>{false, true})) << "always only the first";
}

std::vector<bool> completeGroups(int successes1, int failures1, int successes2, int failures2) {
  recording::Script script;
  script.addNumeric("x");
  script.addNumeric("y");
  script.addNumeric("g");
  if (successes1 > 0) script.addCase({1.0, kSystemMissing, 1.0}, successes1);
  if (failures1 > 0) script.addCase({0.0, kSystemMissing, 1.0}, failures1);
  if (successes2 > 0) script.addCase({1.0, 1.0, 2.0}, successes2);
  if (failures2 > 0) script.addCase({0.0, 1.0, 2.0}, failures2);
  script.command = "PROPORTIONS /INDEPENDENTSAMPLES x y BY g /SUCCESS VALUE=LEVEL(1).";
  return completeRecords(script);
}

TEST(RecordFlags, OneGroupWithBothOutcomesIsEnoughToBeComplete) {
  // The second variable has no trials in the first group and keeps its flag.
  EXPECT_EQ(completeGroups(1, 1, 1, 1), (std::vector<bool>{true, true}));
  EXPECT_EQ(completeGroups(1, 1, 2, 0), (std::vector<bool>{true, true}));
  EXPECT_EQ(completeGroups(0, 2, 1, 1), (std::vector<bool>{true, true}));
  EXPECT_EQ(completeGroups(2, 0, 0, 2), (std::vector<bool>{false, true}));
  EXPECT_EQ(completeGroups(0, 2, 2, 0), (std::vector<bool>{false, true}));
  EXPECT_EQ(completeGroups(2, 0, 3, 0), (std::vector<bool>{false, true}));
}

TEST(RecordFlags, OneSideWithCasesIsEnoughToLookAtTheVariables) {
  recording::Script script;
  script.addNumeric("x");
  script.addNumeric("g");
  script.addCase({1.0, 1.0});
  script.addCase({0.0, 1.0});
  script.command = "PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT=LEVEL(1 2).";
  EXPECT_EQ(recordFlags(script, "Good Data indicator"), std::vector<bool>{false});
  script.command = "PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT=LEVEL(3 4).";
  EXPECT_EQ(recordFlags(script, "Good Data indicator"), std::vector<bool>{true})
      << "with both sides empty nothing is decided";
}

TEST(RecordFlags, NoCaseStandsOnASideOfAMissingMidpoint) {
  recording::Script script;
  script.addNumeric("x");
  script.addNumeric("g");
  script.split = {script.addNumeric("$bootstrap_split")};
  script.addCase({1.0, kSystemMissing, 0.0});
  script.addEndMark();
  script.addCase({1.0, 2.0, 1.0});
  script.addCase({0.0, 4.0, 1.0});
  script.addEndMark();
  script.command = "PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT=MIDPOINT.";
  EXPECT_EQ(recordFlags(script, "Good Data indicator"), (std::vector<bool>{true, true}))
      << "both sides of both samples are empty, so nothing is decided";
}

}  // namespace
}  // namespace diagnostics
