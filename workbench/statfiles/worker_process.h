/// A process of its own for work that may crash, never end or want all memory there is.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <functional>

namespace workbench {

class WorkerProcess {
 public:
  /// How the work came to its end.
  enum class Ending { kDone, kOutOfMemory, kEndless, kCrashed };

  /// Starts `work(output)` in a copy of this process, with a limit on its memory; what it writes to
  /// `output` is read here. `patience` are the seconds of processor time that it may take without a
  /// call of extendTime. Throws std::system_error.
  WorkerProcess(const std::function<void(int output)>& work, unsigned patience);
  /// Ends the process if it still runs.
  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  /// Up to `most` bytes; 0 at the end only. Looks at `interrupted`, which may be null, at least
  /// ten times a second and throws Interrupted once it is set.
  size_t read(char* to, size_t most, const std::atomic<bool>* interrupted);
  /// To be asked once all was read.
  Ending wait();

 private:
  void reap(int& status);

  pid_t process_ = -1;
  int input_ = -1;
};

/// Inside the work: it gets on, and has its time from now on again.
void extendTime();

}  // namespace workbench
