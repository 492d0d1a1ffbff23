#include "workbench/cli/progress_line.h"

#include <unistd.h>

#include <cstdio>

namespace workbench {

ProgressLine::ProgressLine(ProgressMode mode)
    : wanted_(mode == ProgressMode::kAlways ||
              (mode == ProgressMode::kAuto && ::isatty(STDERR_FILENO) != 0)),
      next_(Clock::now() +
            (mode == ProgressMode::kAlways ? std::chrono::seconds(0) : std::chrono::seconds(1))) {}

ProgressLine::~ProgressLine() {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void ProgressLine::show(double percent, int64_t rows) {
  if (!wanted_ || Clock::now() < next_) return;
  next_ = Clock::now() + std::chrono::milliseconds(100);
  shown_ = true;
  if (percent >= 0.0) {
    std::fprintf(stderr, "\rreading: %3.0f %%\033[K", percent);
  } else {
    std::fprintf(stderr, "\rreading: %lld rows\033[K", static_cast<long long>(rows));
  }
  std::fflush(stderr);
}

}  // namespace workbench
