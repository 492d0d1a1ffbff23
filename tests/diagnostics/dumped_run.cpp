#include "tests/diagnostics/dumped_run.h"

#include <gtest/gtest.h>

#include <new>

#include "module/diag/switches.h"

extern "C" void PROPORTI();

namespace diagnostics {
namespace {

/// A critical value that is easy to read.
void fixCriticalValue(recording::Script& script) {
  script.answers.push_back({"MCDistFun.IdfStdNorm", 0, "1.5"});
}

}  // namespace

void AllOn::set(bool on) {
  proportions::DiagnosticSwitches::dumpSpecification = on;
  proportions::DiagnosticSwitches::dumpAnalysis = on;
  proportions::DiagnosticSwitches::probeNoncentrality = on;
}

DumpedRun runWithDumps(const recording::Script& script) {
  const AllOn switches;
  recording::Host host(script);
  testing::internal::CaptureStdout();
  DumpedRun result;
  try {
    PROPORTI();
  } catch (const std::bad_alloc&) {
    result.memoryRanOut = true;
  }
  result.standardOutput = testing::internal::GetCapturedStdout();
  result.display = displayLines(host.transcript());
  for (const recording::Entry& entry : host.transcript().entries()) {
    result.operations.push_back(entry.operation);
  }
  return result;
}

recording::Script oneSampleScript() {
  recording::Script script;
  script.addNumeric("x");
  script.weight = script.addNumeric("w");
  script.addCase({1.0, 12.0});
  script.addCase({0.0, 4.25});
  script.addCase({1.0, 0.25});
  script.command =
      "PROPORTIONS /ONESAMPLE x TESTVAL=0.25 TESTTYPES=EXACT WALDCC CITYPES=LOGIT "
      "/SUCCESS VALUE=CUTPOINT(0.5) /CRITERIA CILEVEL=75.";
  fixCriticalValue(script);
  return script;
}

recording::Script pairedScript() {
  recording::Script script;
  script.addString("s", 3);
  script.addNumeric("b");
  script.addCase({"yes", 1.0}, 6);
  script.addCase({"yes", 0.0}, 3);
  script.addCase({"no", 1.0}, 1);
  script.addCase({"no", 0.0}, 6);
  script.addCase({"yes", kSystemMissing}, 2);
  script.command =
      "PROPORTIONS /PAIREDSAMPLES s WITH b (PAIRED) TESTTYPES=NONE CITYPES=NONE "
      "/MISSING SCOPE=LISTWISE USERMISSING=INCLUDE /CRITERIA CILEVEL=50.";
  fixCriticalValue(script);
  return script;
}

recording::Script independentScript() {
  recording::Script script;
  script.addNumeric("x");
  script.addNumeric("g");
  script.split = {script.addNumeric("$bootstrap_split"), script.addNumeric("u")};
  const auto add = [&](double x, double g, double sample, int times) {
    script.addCase({x, g, sample, 7.0}, times);
  };
  add(1, 1, 0, 6);
  add(0, 1, 0, 2);
  add(1, 5, 0, 2);
  add(0, 5, 0, 6);
  script.addEndMark();
  add(1, 2, 1, 2);
  add(1, 4, 1, 1);
  add(0, 4, 1, 1);
  script.addEndMark();
  script.command =
      "PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT=MIDPOINT TESTTYPES=WALDH0 CITYPES=ALL "
      "/CRITERIA CILEVEL=50.";
  fixCriticalValue(script);
  return script;
}

}  // namespace diagnostics
