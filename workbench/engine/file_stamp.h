/// Whether a file is still what it was.
#pragma once

#include <sys/stat.h>

#include <string>

namespace workbench {

/// A file's identity, size and time of change.
class FileStamp {
 public:
  /// Throws DataError when the file is not there.
  FileStamp(std::string path, std::string label);
  /// Throws DataError when something differs now.
  void refuseChanged() const;

 private:
  std::string path_;
  std::string label_;
  struct stat status_ {};
};

}  // namespace workbench
