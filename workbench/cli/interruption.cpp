#include "workbench/cli/interruption.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstring>

namespace workbench {
namespace {

std::function<void()> stopReading;
std::atomic<int> caught{0};
/// The path of the half-written file; a fixed buffer, since a handler must not allocate.
std::array<char, 4096> halfWritten{};
std::atomic<bool> armed{false};

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU};
/// Writes report what these would end the program for.
constexpr int kReportedByWrites[] = {SIGPIPE, SIGXFSZ};

void onSignal(int signal) {
  if (armed || caught.exchange(signal) != 0) {
    if (armed) ::unlink(halfWritten.data());
    ::_exit(128 + signal);
  }
  if (stopReading) stopReading();
}

}  // namespace

InterruptionGuard::InterruptionGuard(std::function<void()> stop) {
  stopReading = std::move(stop);
  for (const int signal : kSignals) {
    // What is ignored already, as under nohup, stays so.
    if (std::signal(signal, onSignal) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
  for (const int signal : kReportedByWrites) std::signal(signal, SIG_IGN);
}

InterruptionGuard::~InterruptionGuard() {
  for (const int signal : kSignals) {
    if (std::signal(signal, SIG_DFL) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
  stopReading = nullptr;
}

int interruptedBy() { return caught; }

void RemoveOnSignal::arm(const std::string& path) {
  if (path.size() >= halfWritten.size()) return;
  std::memcpy(halfWritten.data(), path.c_str(), path.size() + 1);
  armed = true;
}

RemoveOnSignal::~RemoveOnSignal() { armed = false; }

}  // namespace workbench
