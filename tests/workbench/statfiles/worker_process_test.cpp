#include "workbench/statfiles/worker_process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using Ending = WorkerProcess::Ending;

struct Outcome {
  std::string text;
  Ending ending;
};

Outcome run(const std::function<void(int)>& work) {
  WorkerProcess process(work, 2);
  Outcome outcome{};
  std::array<char, 100> piece{};
  while (const size_t count = process.read(piece.data(), piece.size(), nullptr)) {
    outcome.text.append(piece.data(), count);
  }
  outcome.ending = process.wait();
  return outcome;
}

void say(int output, const std::string& text) {
  ASSERT_EQ(::write(output, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

TEST(WorkerProcess, WhatItWritesIsRead) {
  const std::string text(300'000, 'x');
  const Outcome outcome = run([&](int output) {
    for (size_t at = 0; at < text.size();) {
      at += static_cast<size_t>(::write(output, text.data() + at, text.size() - at));
    }
  });
  EXPECT_EQ(outcome.text, text);
  EXPECT_EQ(outcome.ending, Ending::kDone);
}

TEST(WorkerProcess, CrashesAreItsOwn) {
  for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGKILL}) {
    const Outcome outcome = run([&](int output) {
      say(output, "so far");
      raise(signal);
    });
    EXPECT_EQ(outcome.text, "so far");
    EXPECT_EQ(outcome.ending, Ending::kCrashed) << signal;
  }
  EXPECT_EQ(run([](int) { throw std::runtime_error("no"); }).ending, Ending::kCrashed);
}

TEST(WorkerProcess, MemoryHasALimit) {
  const Outcome outcome = run([](int output) {
    std::string all;
    for (int i = 0; i < 1000; ++i) all.append(size_t{16} << 20, 'x');
    say(output, "too much");
  });
  EXPECT_EQ(outcome.text, "");
#ifdef __SANITIZE_ADDRESS__
  EXPECT_EQ(outcome.ending, Ending::kCrashed);  // the sanitizer's allocator ends the process
#else
  EXPECT_EQ(outcome.ending, Ending::kOutOfMemory);
#endif
}

TEST(WorkerProcess, TimeHasALimit) {
  const Outcome outcome = run([](int) {
    for (std::atomic<bool> on = true; on;) {
    }
  });
  EXPECT_EQ(outcome.ending, Ending::kEndless);
}

TEST(WorkerProcess, TimeIsExtendedByGettingOn) {
  const Outcome outcome = run([](int output) {
    const auto begin = std::clock();
    while (std::clock() - begin < 4 * CLOCKS_PER_SEC) extendTime();
    say(output, "done");
  });
  EXPECT_EQ(outcome.text, "done");
  EXPECT_EQ(outcome.ending, Ending::kDone);
}

TEST(WorkerProcess, AnInterruptEndsIt) {
  pid_t process = 0;
  {
    WorkerProcess worker(
        [](int output) {
          const pid_t self = getpid();
          ::write(output, &self, sizeof self) == sizeof self ? ::pause() : 0;
        },
        2);
    ASSERT_EQ(worker.read(reinterpret_cast<char*>(&process), sizeof process, nullptr),
              sizeof process);
    std::array<char, 10> more{};
    std::atomic<bool> interrupted{false};
    std::thread user([&interrupted] {
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      interrupted = true;
    });
    EXPECT_THROW(worker.read(more.data(), more.size(), &interrupted), Interrupted);
    user.join();
    EXPECT_EQ(::kill(process, 0), 0);
  }
  EXPECT_EQ(::kill(process, 0), -1) << "it is gone, and waited for";
  EXPECT_EQ(errno, ESRCH);
}

TEST(WorkerProcess, SignalsOfTheTerminalAreForItsParent) {
  const Outcome outcome = run([](int output) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) raise(signal);
    say(output, "still there");
  });
  EXPECT_EQ(outcome.text, "still there");
}

}  // namespace
}  // namespace workbench
