#include "workbench/engine/file_stamp.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "workbench/system/file_identity.h"
#include "workbench/values/data_error.h"

namespace workbench {

FileStamp::FileStamp(std::string path, std::string label)
    : path_(std::move(path)), label_(std::move(label)) {
  if (stat(path_.c_str(), &status_) != 0) {
    throw DataError(fmt::format("{}: {}.", label_, std::strerror(errno)));
  }
}

void FileStamp::refuseChanged() const {
  if (!S_ISREG(status_.st_mode)) return;  // a pipe changes by being read, and was copied
  struct stat now {};
  if (stat(path_.c_str(), &now) == 0 && isUnchanged(status_, now)) return;
  throw DataError(
      fmt::format("{}: the file changed while it was read. Run the command again.", label_));
}

}  // namespace workbench
