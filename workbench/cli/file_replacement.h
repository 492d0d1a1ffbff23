/// A file's new content, which takes the place of the old one in one step.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>

namespace workbench {

/// The folder that a path's last part stands in.
std::filesystem::path folderOf(const std::string& path);

/// The new content is written to a temporary file beside the target; what is not committed is
/// forgotten. The target must not be a symbolic link.
class FileReplacement {
 public:
  explicit FileReplacement(const std::string& target);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// 0, or why no content can be written (errno).
  int error() const { return error_; }
  /// Where the new content is written to.
  int descriptor() const { return descriptor_; }

  /// Puts the content in place, safe on the disk: by a rename, with the mode and the owner of the
  /// file that was there (those of a new file if there was none). Where a rename would lose what
  /// belongs to the old file (its other names, an owner that cannot be given, extended attributes),
  /// the content is copied into it, after room for all of it was reserved. 0, or what went wrong.
  int commit();

 private:
  int rename(const struct stat* old);
  int copyInto();

  std::string target_;
  std::string path_;
  bool isBeside_ = false;  ///< in the target's own folder, so that a rename is possible
  int descriptor_ = -1;
  int error_ = 0;
};

}  // namespace workbench
