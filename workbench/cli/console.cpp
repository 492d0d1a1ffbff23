#include "workbench/cli/console.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <mutex>

#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr std::string_view kProgram = "proportions: ";
constexpr std::string_view kEraseLine = "\r\033[K";

std::mutex writing;
std::atomic<bool> hasStatus{false};

/// What cannot be written here cannot be told anywhere.
void emit(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return;
    bytes.remove_prefix(static_cast<size_t>(std::max<ssize_t>(written, 0)));
  }
}

std::string takeStatusAway() { return std::string(hasStatus.exchange(false) ? kEraseLine : ""); }

}  // namespace

void tell(std::string_view text) {
  std::string lines;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    lines += printable(text.substr(start, end - start)) + '\n';
    start = end + 1;
  }
  const std::lock_guard lock(writing);
  emit(takeStatusAway() + lines);
}

void complain(std::string_view text) { tell(std::string(kProgram).append(text)); }

void showStatus(std::string_view text) {
  const std::lock_guard lock(writing);
  hasStatus = true;
  emit(std::string("\r").append(text).append("\033[K"));
}

void clearStatus() {
  const std::lock_guard lock(writing);
  emit(takeStatusAway());
}

void complainLast(std::string_view text) noexcept {
  pollfd standardError{STDERR_FILENO, POLLOUT, 0};
  if (::poll(&standardError, 1, 0) != 1 || (standardError.revents & POLLOUT) == 0) return;
  if (hasStatus.exchange(false)) emit(kEraseLine);
  emit(kProgram);
  emit(text);
  emit("\n");
}

}  // namespace workbench
