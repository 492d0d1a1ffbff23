/// The line on standard error that tells how far a long read has come.
#pragma once

#include <chrono>
#include <cstdint>

#include "workbench/cli/options.h"

namespace workbench {

class ProgressLine {
 public:
  explicit ProgressLine(ProgressMode mode);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// `percent` is negative when it is not known. Shows nothing before a second has passed (unless
  /// always wanted), and at most ten lines a second.
  void show(double percent, int64_t rows);

 private:
  using Clock = std::chrono::steady_clock;
  bool wanted_;
  Clock::time_point next_;
};

}  // namespace workbench
