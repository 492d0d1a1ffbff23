#include "workbench/cli/progress_line.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <string>

#include "workbench/cli/console.h"

namespace workbench {
namespace {

struct PhaseName {
  Phase phase;
  const char* name;
  const char* things;  ///< that are counted where the end is not known
};

constexpr std::array kNames{
    PhaseName{Phase::kWaiting, "waiting for the server", nullptr},
    PhaseName{Phase::kNames, "looking for names", "rows"},
    PhaseName{Phase::kReading, "reading", "rows"},
    PhaseName{Phase::kKeeping, "reading again", "rows"},
    PhaseName{Phase::kSorting, "sorting", "rows"},
    PhaseName{Phase::kFirstPass, "first pass", "rows"},
    PhaseName{Phase::kSecondPass, "second pass", "rows"},
    PhaseName{Phase::kFurtherPass, "further pass", "rows"},
    PhaseName{Phase::kLeavingOut, "bootstrap, leaving cases out", "cases"},
    PhaseName{Phase::kSamples, "bootstrap samples", "samples"},
};

const PhaseName& nameOf(Phase phase) {
  for (const PhaseName& each : kNames) {
    if (each.phase == phase) return each;
  }
  return kNames.front();
}

}  // namespace

ProgressLine::ProgressLine(ProgressMode mode)
    : wanted_(mode == ProgressMode::kAlways ||
              (mode == ProgressMode::kAuto && ::isatty(STDERR_FILENO) != 0)),
      silentUntil_(Clock::now() + (mode == ProgressMode::kAlways ? std::chrono::seconds(0)
                                                                 : std::chrono::seconds(1))) {}

ProgressLine::~ProgressLine() { clearStatus(); }

void ProgressLine::show(Phase phase, double percent, int64_t done) {
  const Clock::time_point now = Clock::now();
  const bool begins = phase != phase_;
  if (begins) begun_ = now;
  phase_ = phase;
  if (!wanted_ || now < silentUntil_ || (!begins && now < next_)) return;
  next_ = now + std::chrono::milliseconds(100);
  const PhaseName& what = nameOf(phase);
  if (what.things == nullptr) {
    const auto waited = std::chrono::duration_cast<std::chrono::seconds>(now - begun_);
    showStatus(fmt::format("{}: {} s", what.name, waited.count()));
  } else if (percent >= 0.0) {
    showStatus(fmt::format("{}: {:3.0f} %", what.name, percent));
  } else {
    showStatus(fmt::format("{}: {} {}", what.name, done, what.things));
  }
}

}  // namespace workbench
