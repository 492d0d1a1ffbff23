// Where the dumps and the probe stand among the other calls of a run, what the probe asks for, and
// what happens when the display fails.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/diagnostics/dumped_run.h"

extern "C" void PROPORTI();

namespace diagnostics {
namespace {

/// The run's milestones; of several calls in a row of one kind only the first, split changes apart.
std::vector<std::string> milestonesOf(const recording::Script& script) {
  const AllOn switches;
  const recording::Host host(script);
  testing::internal::CaptureStdout();
  PROPORTI();
  testing::internal::GetCapturedStdout();
  const std::vector<std::string> kinds{"AddNotes",    "BEPesRepos",        "FindNCParamT",
                                       "SplitChange", "NoValidCasesSplit", "PivotTable",
                                       "BpError",     "BP_ToFront",        "ACACommonDisplay"};
  std::vector<std::string> found;
  for (const recording::Entry& entry : recording::Host::current().transcript().entries()) {
    if (!recording::matches(kinds, entry.operation)) continue;
    std::string name = entry.operation;
    if (name == "BP_ToFront" || name.rfind("ACACommonDisplay", 0) == 0) name = "dump";
    if (entry.text.find("PRPValidSpecs display start") != std::string::npos) name = "specification";
    if (entry.text.find("PRPAlgorithm display start") != std::string::npos) name = "analysis";
    const bool repeats = !found.empty() && found.back() == name;
    if (!repeats || name == "BpProcedure.SplitChange") found.push_back(name);
  }
  return found;
}

TEST(Places, TheDumpsStandAtTheirPlacesAmongTheOtherCalls) {
  recording::Script script;
  script.addNumeric("x");
  script.addNumeric("y");
  script.split = {script.addNumeric("r")};
  const auto group = [&script](double r, std::initializer_list<double> values) {
    for (const double value : values) script.addCase({value, kSystemMissing, r});
    script.addEndMark();
  };
  group(1, {1, 0});
  group(2, {kSystemMissing});
  script.command =
      "PROPORTIONS /ONESAMPLE x y TESTTYPES=SCORE CITYPES=WALD /MISSING SCOPE=ANALYSIS "
      "/SUCCESS VALUE=LEVEL(1).";
  EXPECT_EQ(milestonesOf(script), linesOf(R"(
    AddNotes
    dump
    specification
    dump
    BEPesRepos.BEPesClear
    BpProcedure.SplitChange
    BpProcedure.SplitChange
    BpProcedure.SplitChange
    BpHeading.PivotTable
    BpError
    BpHeading.PivotTable
    MCDistFun.FindNCParamT
    dump
    analysis
    dump
    BpProcedure.SplitChange
    BpError
    dump
    analysis
    dump
    BEPesRepos.BEPesCheckError
  )"));
}

TEST(Places, TheProbeSaysWhenTheHostHasNoAnswer) {
  recording::Script script = oneSampleScript();
  script.answers.push_back({"MCDistFun.FindNCParamT", 2, "missing"});
  const std::string output = runWithDumps(script).standardOutput;
  const std::string first = "FindNCParamT( 2.000000, 5.000000, 0.975000, 0.000001 ) = -0.369216\n";
  const std::string second = "FindNCParamT( 2.000000, 5.000000, 0.025000, 0.000001 ) = missing\n";
  EXPECT_EQ(output.substr(0, first.size() + second.size()), first + second);
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 14);
}

TEST(Places, TheProbeAsksWithItsTolerance) {
  const AllOn switches;
  const recording::Host host(oneSampleScript());
  testing::internal::CaptureStdout();
  PROPORTI();
  testing::internal::GetCapturedStdout();
  std::vector<std::string> asked;
  for (const recording::Entry& entry : recording::Host::current().transcript().entries()) {
    if (entry.operation != "MCDistFun.FindNCParamT") continue;
    asked.push_back(entry.text.substr(0, entry.text.find(" = ")));
  }
  ASSERT_EQ(asked.size(), 14U);
  EXPECT_EQ(asked.front(),
            "MCDistFun.FindNCParamT(2, 5, 0.97499999999999998, 9.9999999999999995e-07, "
            "9.9999999999999998e-13)");
  EXPECT_EQ(asked.back(),
            "MCDistFun.FindNCParamT(-4, 5, 0.025000000000000001, 9.9999999999999995e-07, "
            "9.9999999999999998e-13)");
}

/// Every call of the display throws in turn: the exception leaves the run, and nothing stays.
TEST(Places, ADisplayThatFailsEndsTheRun) {
  for (const recording::Script& script : {oneSampleScript(), pairedScript(), independentScript()}) {
    const DumpedRun whole = runWithDumps(script);
    for (const char* operation : {"BP_ToFront", "ACACommonDisplay.DisplayB",
                                  "ACACommonDisplay.DisplayD", "ACACommonDisplay.DisplaySV"}) {
      const auto calls = std::count(whole.operations.begin(), whole.operations.end(), operation);
      ASSERT_GT(calls, 0) << operation;
      for (int64_t k = 1; k <= calls; ++k) {
        recording::Script failing = script;
        failing.faults.push_back({recording::ScriptFault::What::kBadAlloc,
                                  recording::ScriptFault::At::kOperation, operation, k});
        const DumpedRun ended = runWithDumps(failing);
        EXPECT_TRUE(ended.memoryRanOut) << operation << " " << k;
        EXPECT_LE(ended.display.size(), whole.display.size()) << operation << " " << k;
        EXPECT_EQ(recording::alive(), std::vector<std::string>()) << operation << " " << k;
      }
    }
    EXPECT_EQ(runWithDumps(script).display, whole.display);
  }
}

}  // namespace
}  // namespace diagnostics
