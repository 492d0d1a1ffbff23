#include "workbench/cli/progress_line.h"

#include <fmt/format.h>
#include <unistd.h>

#include "workbench/cli/console.h"

namespace workbench {

ProgressLine::ProgressLine(ProgressMode mode)
    : wanted_(mode == ProgressMode::kAlways ||
              (mode == ProgressMode::kAuto && ::isatty(STDERR_FILENO) != 0)),
      next_(Clock::now() +
            (mode == ProgressMode::kAlways ? std::chrono::seconds(0) : std::chrono::seconds(1))) {}

ProgressLine::~ProgressLine() { clearStatus(); }

void ProgressLine::show(double percent, int64_t rows) {
  if (!wanted_ || Clock::now() < next_) return;
  next_ = Clock::now() + std::chrono::milliseconds(100);
  showStatus(percent >= 0.0 ? fmt::format("reading: {:3.0f} %", percent)
                            : fmt::format("reading: {} rows", rows));
}

}  // namespace workbench
