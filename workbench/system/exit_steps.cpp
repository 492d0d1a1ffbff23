#include "workbench/system/exit_steps.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace workbench {
namespace {

struct Steps {
  std::mutex mutex;
  std::map<uint64_t, std::function<void()>> byNumber;
  uint64_t last = 0;
};

/// Never destroyed: the thread that watches for signals may outlive everything else.
Steps& steps() {
  static Steps* const all = new Steps;
  return *all;
}

struct Done {
  std::mutex mutex;
  std::condition_variable changed;
  bool yes = false;
};

}  // namespace

ExitStep::ExitStep(std::function<void()> step) {
  const std::lock_guard lock(steps().mutex);
  number_ = ++steps().last;
  steps().byNumber.emplace(number_, std::move(step));
}

ExitStep::~ExitStep() {
  const std::lock_guard lock(steps().mutex);
  steps().byNumber.erase(number_);
}

void takeExitSteps(std::chrono::milliseconds limit) {
  const auto done = std::make_shared<Done>();
  std::thread([done] {
    steps().mutex.lock();  // for good: what a step is about must not go away any more
    auto& all = steps().byNumber;
    for (auto step = all.rbegin(); step != all.rend(); ++step) step->second();
    const std::lock_guard lock(done->mutex);
    done->yes = true;
    done->changed.notify_all();
  }).detach();
  std::unique_lock lock(done->mutex);
  done->changed.wait_for(lock, limit, [&] { return done->yes; });
}

}  // namespace workbench
