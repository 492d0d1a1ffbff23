/// Signals that end the program early.
#pragma once

#include <thread>

namespace workbench {

/// While it lives, SIGINT, SIGTERM and the like end the program at once, whatever it does or waits
/// for, without leaving a temporary file or folder behind; a signal that was ignored when the
/// program began stays ignored, as under nohup. Signals about writing are ignored: the write itself
/// tells of a closed pipe or a file that may not grow. At most one at a time.
class InterruptionGuard {
 public:
  /// `status`: the exit status of an interrupted program. Throws std::system_error.
  explicit InterruptionGuard(int status);
  ~InterruptionGuard();
  InterruptionGuard(const InterruptionGuard&) = delete;
  InterruptionGuard& operator=(const InterruptionGuard&) = delete;

 private:
  int told_ = -1;  ///< where the watcher hears of signals
  std::thread watcher_;
};

/// Does not return once a signal has come, even if its watcher has not had its turn yet: to be
/// called before results are written.
void stopIfInterrupted();

}  // namespace workbench
