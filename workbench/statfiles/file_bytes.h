/// A file as the library reads it, with what has to be known of how it was read.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace workbench {

/// Reads ahead in large pieces: the library asks for each case by itself.
class FileBytes {
 public:
  /// The descriptor of a regular file; the caller keeps it open.
  FileBytes(int descriptor, uint64_t size);

  /// As read(2) and lseek(2).
  ssize_t read(char* to, size_t most);
  off_t seek(off_t offset, int whence);

  uint64_t size() const { return size_; }
  uint64_t position() const { return position_; }
  /// The end of the last read.
  uint64_t readUntil() const { return readUntil_; }
  /// Of the last read: how many bytes it asked for, and what it got (its first bytes).
  size_t lastAsked() const { return lastAsked_; }
  const std::string& lastGot() const { return lastGot_; }
  /// The bytes from there to the end, at most `most` of them.
  std::string tail(uint64_t from, size_t most) const;
  /// True when a record of 80 bytes beyond the first data set's own heading begins a data set.
  bool sawSecondMember() const { return secondMember_; }

 private:
  bool fill();

  int descriptor_;
  uint64_t size_;
  uint64_t position_ = 0;
  uint64_t readUntil_ = 0;
  size_t lastAsked_ = 0;
  std::string lastGot_;
  std::string window_;
  uint64_t windowStart_ = 0;
  size_t windowSize_ = 0;
  uint64_t farthest_ = 0;
  bool secondMember_ = false;
};

}  // namespace workbench
