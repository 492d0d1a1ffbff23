/// The line on standard error that tells what a long run is at, and how far.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "workbench/cli/options.h"
#include "workbench/session/progress.h"

namespace workbench {

class ProgressLine {
 public:
  explicit ProgressLine(ProgressMode mode);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Whether anything is ever shown.
  bool isWanted() const { return wanted_; }
  /// `percent` is negative when it is not known. Shows nothing before a second has passed (unless
  /// always wanted); then a phase that begins, and of one that goes on at most ten lines a second.
  void show(Phase phase, double percent, int64_t done);

 private:
  using Clock = std::chrono::steady_clock;
  bool wanted_;
  Clock::time_point silentUntil_;
  Clock::time_point begun_;  // the phase that is shown
  Clock::time_point next_;
  std::optional<Phase> phase_;
};

}  // namespace workbench
