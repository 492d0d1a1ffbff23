/// Failures whose text is meant for the person who gave the data.
#pragma once

#include <atomic>
#include <stdexcept>
#include <string>

namespace workbench {

/// What is wrong with the data, where, and what to do instead; one or more lines, no final newline.
class DataError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reading that was stopped from outside.
class Interrupted : public DataError {
 public:
  Interrupted() : DataError("The run was interrupted.") {}
};

/// Throws Interrupted when a flag from outside (a signal handler's, say), which may be null, is
/// set.
inline void throwIfSet(const std::atomic<bool>* interrupted) {
  if (interrupted != nullptr && *interrupted) throw Interrupted();
}

}  // namespace workbench
