// When the dumps are written: each behind its own switch, and at its place in a run.
#include "module/diag/switches.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/diagnostics/display_lines.h"

extern "C" void PROPORTI();

namespace diagnostics {
namespace {

using proportions::DiagnosticSwitches;

/// Every switch is off again afterwards.
class Switches : public testing::Test {
 protected:
  ~Switches() override {
    DiagnosticSwitches::dumpSpecification = false;
    DiagnosticSwitches::dumpAnalysis = false;
    DiagnosticSwitches::probeNoncentrality = false;
  }

  /// Three groups: one with both outcomes, one whose cases weigh nothing, one without valid values.
  static recording::Script threeGroups() {
    recording::Script script;
    const VarIndex x = script.addNumeric("x");
    script.split = {script.addNumeric("r")};
    script.weight = script.addNumeric("w");
    script.variables[static_cast<size_t>(x)].missingNumbers = {9};
    const auto group = [&script](double r, double weight, std::initializer_list<double> values) {
      for (const double value : values) script.addCase({value, r, weight});
      script.addEndMark();
    };
    group(1, 1, {1, 0, 1});
    group(2, 0, {1, 0});
    group(3, 1, {9});
    script.command =
        "PROPORTIONS /ONESAMPLE x TESTTYPES=SCORE CITYPES=WALD /SUCCESS VALUE=LEVEL(1).";
    return script;
  }

  /// Runs the command and keeps what it wrote to standard output.
  std::string run(const recording::Script& script) {
    const recording::Host host(script);
    testing::internal::CaptureStdout();
    PROPORTI();
    const std::string output = testing::internal::GetCapturedStdout();
    display = displayLines(recording::Host::current().transcript());
    for (const recording::Entry& entry : recording::Host::current().transcript().entries()) {
      operations.push_back(entry.operation);
    }
    return output;
  }

  ptrdiff_t countOf(const std::string& line) const {
    return std::count(display.begin(), display.end(), line);
  }
  /// Where an operation stands in the run; the end when it does not.
  ptrdiff_t placeOf(const std::string& operation, ptrdiff_t from = 0) const {
    return std::find(operations.begin() + from, operations.end(), operation) - operations.begin();
  }

  std::vector<std::string> display;
  std::vector<std::string> operations;
};

TEST_F(Switches, AreOffAtStartAndNothingIsWritten) {
  EXPECT_FALSE(DiagnosticSwitches::dumpSpecification);
  EXPECT_FALSE(DiagnosticSwitches::dumpAnalysis);
  EXPECT_FALSE(DiagnosticSwitches::probeNoncentrality);
  EXPECT_EQ(run(threeGroups()), "");
  EXPECT_EQ(display, std::vector<std::string>());
  EXPECT_FALSE(DiagnosticSwitches::dumpSpecification);
  EXPECT_FALSE(DiagnosticSwitches::dumpAnalysis);
  EXPECT_FALSE(DiagnosticSwitches::probeNoncentrality);
}

TEST_F(Switches, TheSpecificationIsDumpedOnceRightAfterTheNotes) {
  DiagnosticSwitches::dumpSpecification = true;
  EXPECT_EQ(run(threeGroups()), "");
  EXPECT_EQ(countOf("PRPValidSpecs display start"), 1);
  EXPECT_EQ(countOf("PRPAlgorithm display start"), 0);
  const ptrdiff_t dump = placeOf("BP_ToFront");
  EXPECT_EQ(operations.at(static_cast<size_t>(dump) - 1), "AddNotes");
  EXPECT_LT(dump, placeOf("BEPesRepos.BEPesClear"));
}

TEST_F(Switches, ARefusedCommandDumpsNothing) {
  DiagnosticSwitches::dumpSpecification = true;
  DiagnosticSwitches::dumpAnalysis = true;
  DiagnosticSwitches::probeNoncentrality = true;
  recording::Script script = threeGroups();
  script.command = "PROPORTIONS /MISSING SCOPE=LISTWISE.";
  EXPECT_EQ(run(script), "");
  EXPECT_EQ(display, std::vector<std::string>());
}

TEST_F(Switches, AFatalErrorOfTheParseDumpsNothing) {
  DiagnosticSwitches::dumpSpecification = true;
  recording::Script script = threeGroups();
  script.faults.push_back({recording::ScriptFault::What::kFatalError,
                           recording::ScriptFault::At::kOperation, "ProcedureDataSource.FatalError",
                           1});
  EXPECT_EQ(run(script), "");
  EXPECT_EQ(display, std::vector<std::string>());
}

TEST_F(Switches, EveryGroupIsDumpedAfterItsSecondPassAlsoWhenItIsSkipped) {
  DiagnosticSwitches::dumpAnalysis = true;
  EXPECT_EQ(run(threeGroups()), "");
  EXPECT_EQ(countOf("PRPAlgorithm display start"), 3);
  EXPECT_EQ(countOf("PRPValidSpecs display start"), 0);
  std::vector<std::string> counts;
  std::copy_if(display.begin(), display.end(), std::back_inserter(counts),
               [](const std::string& line) {
                 return line.rfind("I Number of", 0) == 0 || line.rfind("D Number of s", 0) == 0 ||
                        line.rfind("B Good Data", 0) == 0;
               });
  // The second group keeps the counts of its first pass when it is read through.
  EXPECT_EQ(counts, linesOf(R"(
    B Good Data indicator = true
    I Number of all cases = 3
    I Number of valid cases = 3
    I Number of invalid cases = 0
    D Number of successes = 2
    B Good Data indicator = true
    B Good Data indicator = false
    I Number of all cases = 4
    I Number of valid cases = 0
    I Number of invalid cases = 4
    D Number of successes = 0
    B Good Data indicator = true
    B Good Data indicator = false
    I Number of all cases = 1
    I Number of valid cases = 1
    I Number of invalid cases = 0
    D Number of successes = 0
    B Good Data indicator = false
  )"));
}

TEST_F(Switches, TheProbeFollowsEveryRunThatSucceeds) {
  DiagnosticSwitches::probeNoncentrality = true;
  const std::string output = run(threeGroups());
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 14) << "the first group alone";
  EXPECT_EQ(display, std::vector<std::string>());
}

// The noncentralities are those of reference/distributions/noncentrality.csv, to the digits
// printed.
TEST_F(Switches, TheProbeAsksForAFixedGrid) {
  DiagnosticSwitches::probeNoncentrality = true;
  recording::Script script;
  script.addNumeric("x");
  script.addCase({1.0});
  script.addCase({0.0});
  script.command = "PROPORTIONS /ONESAMPLE x.";
  EXPECT_EQ(run(script),
            "FindNCParamT( 2.000000, 5.000000, 0.975000, 0.000001 ) = -0.369216\n"
            "FindNCParamT( 2.000000, 5.000000, 0.025000, 0.000001 ) = 4.232451\n"
            "FindNCParamT( 1.000000, 5.000000, 0.975000, 0.000001 ) = -1.094568\n"
            "FindNCParamT( 1.000000, 5.000000, 0.025000, 0.000001 ) = 3.006572\n"
            "FindNCParamT( 0.000000, 5.000000, 0.975000, 0.000001 ) = -1.959964\n"
            "FindNCParamT( 0.000000, 5.000000, 0.025000, 0.000001 ) = 1.959964\n"
            "FindNCParamT( -1.000000, 5.000000, 0.975000, 0.000001 ) = -3.006572\n"
            "FindNCParamT( -1.000000, 5.000000, 0.025000, 0.000001 ) = 1.094568\n"
            "FindNCParamT( -2.000000, 5.000000, 0.975000, 0.000001 ) = -4.232451\n"
            "FindNCParamT( -2.000000, 5.000000, 0.025000, 0.000001 ) = 0.369216\n"
            "FindNCParamT( -3.000000, 5.000000, 0.975000, 0.000001 ) = -5.591675\n"
            "FindNCParamT( -3.000000, 5.000000, 0.025000, 0.000001 ) = -0.261839\n"
            "FindNCParamT( -4.000000, 5.000000, 0.975000, 0.000001 ) = -7.034470\n"
            "FindNCParamT( -4.000000, 5.000000, 0.025000, 0.000001 ) = -0.831025\n");
}

}  // namespace
}  // namespace diagnostics
