/// Runs of the module with every diagnostic switch on, and scripts for them.
#pragma once

#include "tests/diagnostics/display_lines.h"

namespace diagnostics {

/// Every switch is on while one lives, and off afterwards.
class AllOn {
 public:
  AllOn() { set(true); }
  ~AllOn() { set(false); }
  AllOn(const AllOn&) = delete;
  AllOn& operator=(const AllOn&) = delete;

 private:
  static void set(bool on);
};

struct DumpedRun {
  std::vector<std::string> display;     ///< as displayLines gives it
  std::vector<std::string> operations;  ///< of the whole run
  std::string standardOutput;
  bool memoryRanOut = false;
};

DumpedRun runWithDumps(const recording::Script& script);

/// 12 successes of 16 weighted cases, tested against 1/4.
recording::Script oneSampleScript();
/// A string and a number, 6 + 3 + 1 + 6 cases of the four kinds and two that listwise exclusion
/// drops.
recording::Script pairedScript();
/// Groups at the midpoint, 6 of 8 against 2 of 8; the second split group is a resample of the
/// first.
recording::Script independentScript();

}  // namespace diagnostics
