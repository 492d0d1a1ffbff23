#include "workbench/statfiles/worker_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <system_error>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// Beyond what the process has when the work begins.
constexpr rlim_t kMostMemory = rlim_t{320} << 20;
constexpr int kOutOfMemory = 3;
constexpr int kFailed = 4;
constexpr int kPollMilliseconds = 50;

/// Of the process that does the work.
rlim_t patienceOfWork = 0;

void limit(int resource, rlim_t soft, rlim_t hard) {
  const struct rlimit limits { soft, hard };
  setrlimit(static_cast<__rlimit_resource>(resource), &limits);
}

/// Bytes of address space in use.
rlim_t memoryInUse() {
  std::array<char, 64> text{};
  const int file = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  const ssize_t size = file < 0 ? -1 : ::read(file, text.data(), text.size() - 1);
  if (file >= 0) ::close(file);
  if (size <= 0) return 0;
  return std::strtoull(text.data(), nullptr, 10) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

/// Signals mean to the work what they mean to a program that cares for none: those of the terminal
/// are for its parent to decide about.
void resetSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) std::signal(signal, SIG_IGN);
  for (const int signal : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL, SIGXCPU}) {
    std::signal(signal, SIG_DFL);
  }
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// What a library or the allocator has to say on standard error is nothing for the user.
void silence() {
  const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nowhere < 0) return;
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nowhere, standard);
}

void confine(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) ::_exit(kFailed);
  resetSignals();
  silence();
  limit(RLIMIT_CORE, 0, 0);
  limit(RLIMIT_FSIZE, 0, 0);
  const rlim_t inUse = memoryInUse();
  if (inUse > 0) limit(RLIMIT_AS, inUse + kMostMemory, inUse + kMostMemory);
  extendTime();
}

[[noreturn]] void run(const std::function<void(int)>& work, int output, pid_t parent) {
  confine(parent);
  int status = 0;
  try {
    work(output);
  } catch (const std::bad_alloc&) {
    status = kOutOfMemory;
  } catch (const std::exception&) {
    status = kFailed;  // the parent finds the messages incomplete and says so
  }
  ::_exit(status);
}

}  // namespace

void extendTime() {
  struct rusage used {};
  getrusage(RUSAGE_SELF, &used);
  // Both parts were begun: to leave them out would cost up to two seconds of the patience.
  const auto seconds = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec + 2);
  limit(RLIMIT_CPU, seconds + patienceOfWork, RLIM_INFINITY);
}

WorkerProcess::WorkerProcess(const std::function<void(int output)>& work, unsigned patience) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "pipe");
  }
  const pid_t parent = getpid();
  process_ = ::fork();
  if (process_ == 0) {
    ::close(ends[0]);
    patienceOfWork = patience;
    run(work, ends[1], parent);
  }
  const int error = errno;
  ::close(ends[1]);
  input_ = ends[0];
  if (process_ < 0) {
    ::close(input_);
    throw std::system_error(error, std::generic_category(), "fork");
  }
}

WorkerProcess::~WorkerProcess() {
  if (input_ >= 0) ::close(input_);
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  int status = 0;
  reap(status);
}

void WorkerProcess::reap(int& status) {
  while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
}

size_t WorkerProcess::read(char* to, size_t most, const std::atomic<bool>* interrupted) {
  for (;;) {
    throwIfSet(interrupted);
    struct pollfd ready {
      input_, POLLIN, 0
    };
    const int answer = ::poll(&ready, 1, kPollMilliseconds);
    if (answer < 0 && errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    if (answer <= 0) continue;
    const ssize_t count = ::read(input_, to, most);
    if (count >= 0) return static_cast<size_t>(count);
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "read");
  }
}

WorkerProcess::Ending WorkerProcess::wait() {
  int status = 0;
  reap(status);
  if (WIFSIGNALED(status)) {
    return WTERMSIG(status) == SIGXCPU ? Ending::kEndless : Ending::kCrashed;
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return Ending::kDone;
  return WIFEXITED(status) && WEXITSTATUS(status) == kOutOfMemory ? Ending::kOutOfMemory
                                                                  : Ending::kCrashed;
}

}  // namespace workbench
