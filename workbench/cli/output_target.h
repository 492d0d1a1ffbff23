/// Where the results go. A file appears whole or not at all.
#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

#include "workbench/system/file_identity.h"

namespace workbench {

/// The output cannot be written: what, where and why.
struct OutputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class OutputTarget {
 public:
  /// "-" is standard output; any other path is followed to where its links lead. Throws OutputError
  /// unless it could be written to: before any work is done for it.
  explicit OutputTarget(const std::string& path);

  /// Where a file is replaced, it keeps its mode, its owner and its other names. Devices, pipes and
  /// open descriptors (/dev/stdout, /dev/fd/3) are written to as they are; there, a reader who has
  /// closed the pipe ends the writing without an error. Throws OutputError, and then a file is as
  /// it was before.
  void write(const std::function<void(std::ostream&)>& write) const;

  bool isStandardOutput() const { return path_.empty(); }
  /// The file that would be changed, when it is there already.
  std::optional<FileIdentity> identity() const;
  /// Where a file would be made, as placeOf has it; empty for a descriptor or a device.
  std::string place() const { return kind_ == Kind::kFile ? placeOf(file_) : ""; }

 private:
  enum class Kind { kDescriptor, kSpecial, kFile };

  void follow(const std::string& path);
  void checkDescriptor() const;
  void checkFile() const;
  void writeAsItIs(int descriptor, const std::function<void(std::ostream&)>& write) const;
  void writeFile(const std::function<void(std::ostream&)>& write) const;
  [[noreturn]] void fail(int error) const;

  std::string path_;  ///< as it was given; empty: standard output
  Kind kind_ = Kind::kFile;
  int descriptor_ = -1;
  std::string file_;  ///< where the links lead
};

}  // namespace workbench
