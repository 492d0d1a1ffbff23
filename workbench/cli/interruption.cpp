#include "workbench/cli/interruption.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>

#include "workbench/cli/console.h"
#include "workbench/system/exit_steps.h"
#include "workbench/system/temporary_paths.h"

namespace workbench {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU};
/// Signals that would end the program for what a failed write reports anyway.
constexpr int kReportedByWrites[] = {SIGPIPE, SIGXFSZ};

/// A server that does not answer cannot keep the program from ending.
constexpr std::chrono::milliseconds kPatience{1500};

/// Where the handler tells the watcher; negative while nobody watches.
std::atomic<int> tellWatcher{-1};
std::atomic<bool> signalCame{false};

/// All that is safe in a handler: what is to be done is done by a thread.
void onSignal(int) {
  const int saved = errno;
  signalCame = true;
  const char byte = 0;
  // A pipe that is full has told already.
  [[maybe_unused]] const ssize_t written = ::write(tellWatcher, &byte, 1);
  errno = saved;
}

/// Sets what a signal does, unless it is ignored.
void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  ::sigaction(signal, nullptr, &action);
  if (action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  ::sigaction(signal, &action, nullptr);
}

/// Waits for a signal, or for the pipe to close.
void watch(int told, int status) {
  char byte = 0;
  ssize_t heard = 0;
  do {
    heard = ::read(told, &byte, 1);
  } while (heard < 0 && errno == EINTR);
  if (heard != 1) return;
  takeExitSteps(kPatience);
  removeTemporariesAndExit(status, [] { complainLast("interrupted"); });
}

}  // namespace

void stopIfInterrupted() {
  while (signalCame) ::pause();  // the watcher ends the program
}

InterruptionGuard::InterruptionGuard(int status) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "no pipe for signals can be made");
  }
  told_ = ends[0];
  ::fcntl(ends[1], F_SETFL, O_NONBLOCK);
  tellWatcher = ends[1];
  watcher_ = std::thread(watch, told_, status);
  for (const int signal : kSignals) handle(signal, onSignal);
  for (const int signal : kReportedByWrites) std::signal(signal, SIG_IGN);
}

InterruptionGuard::~InterruptionGuard() {
  for (const int signal : kSignals) handle(signal, SIG_DFL);
  ::close(tellWatcher.exchange(-1));
  watcher_.join();
  ::close(told_);
}

}  // namespace workbench
