/// Bytes of a file or a pipe, to be read more than once.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace workbench {

class ByteInput {
 public:
  virtual ~ByteInput() = default;
  /// Up to `most` bytes from there on; 0 at the end only. Throws DataError, and Interrupted when
  /// the flag was set.
  virtual size_t readAt(uint64_t offset, char* to, size_t most) = 0;
  /// Gives the descriptor back until the next read: a data set may have more files than a process
  /// may open.
  virtual void release() {}
  /// Negative while it is unknown.
  virtual int64_t size() const = 0;
  /// Throws DataError when the file is not what it was when it was opened.
  virtual void refuseChanged() const {}
};

/// "-" is standard input. What is not a regular file is kept in a temporary file as it is read.
/// `label` names it in messages; `interrupted` may be null. Throws DataError.
std::unique_ptr<ByteInput> openInput(const std::string& path, const std::string& label,
                                     const std::atomic<bool>* interrupted);

}  // namespace workbench
