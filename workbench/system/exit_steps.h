/// What has to be told to somebody else before a signal ends the program.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace workbench {

/// A step that is taken when the program is interrupted while this lives: on another thread, and at
/// most once. The destructor waits for a step that has begun.
class ExitStep {
 public:
  explicit ExitStep(std::function<void()> step);
  ~ExitStep();
  ExitStep(const ExitStep&) = delete;
  ExitStep& operator=(const ExitStep&) = delete;

 private:
  uint64_t number_;
};

/// Takes all steps, the newest first; returns when they are done or the time is over, and the
/// program is to end then. From then on ExitStep neither begins nor ends.
void takeExitSteps(std::chrono::milliseconds limit);

}  // namespace workbench
