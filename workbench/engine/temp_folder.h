/// A folder for what does not fit into memory.
#pragma once

#include <string>

namespace workbench {

/// Made under TMPDIR (or /tmp), readable by its owner only, and removed with all that it holds when
/// the object goes or a signal ends the program.
class TempFolder {
 public:
  /// Throws DataError when it cannot be made.
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace workbench
