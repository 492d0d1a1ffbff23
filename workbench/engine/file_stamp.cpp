#include "workbench/engine/file_stamp.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <utility>

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
  const bool there = stat(path_.c_str(), &now) == 0;
  if (there && now.st_dev == status_.st_dev && now.st_ino == status_.st_ino &&
      now.st_size == status_.st_size && now.st_mtim.tv_sec == status_.st_mtim.tv_sec &&
      now.st_mtim.tv_nsec == status_.st_mtim.tv_nsec &&
      now.st_ctim.tv_sec == status_.st_ctim.tv_sec &&
      now.st_ctim.tv_nsec == status_.st_ctim.tv_nsec) {
    return;
  }
  throw DataError(
      fmt::format("{}: the file changed while it was read. Run the command again.", label_));
}

}  // namespace workbench
