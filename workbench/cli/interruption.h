/// Signals that end the program early.
#pragma once

#include <functional>
#include <string>

namespace workbench {

/// While it lives, SIGINT, SIGTERM and the like ask the running read to stop through `stop` (called
/// in the signal handler, so it may only set flags) instead of ending the program; a second one
/// ends it at once. Signals about writing are ignored: the write itself tells of a closed pipe or a
/// file that may not grow.
class InterruptionGuard {
 public:
  explicit InterruptionGuard(std::function<void()> stop);
  ~InterruptionGuard();
  InterruptionGuard(const InterruptionGuard&) = delete;
  InterruptionGuard& operator=(const InterruptionGuard&) = delete;
};

/// The signal that came, 0 when none did.
int interruptedBy();

/// Removes a half-written file when a signal ends the program at once. One at a time.
class RemoveOnSignal {
 public:
  RemoveOnSignal() = default;
  ~RemoveOnSignal();
  RemoveOnSignal(const RemoveOnSignal&) = delete;
  RemoveOnSignal& operator=(const RemoveOnSignal&) = delete;
  void arm(const std::string& path);
};

}  // namespace workbench
