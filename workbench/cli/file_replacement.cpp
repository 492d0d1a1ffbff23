#include "workbench/cli/file_replacement.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "workbench/system/temporary_paths.h"

namespace workbench {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissions = 07777;

/// The rights that a new file gets.
mode_t newFileMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

/// What a rename would lose, whoever does it.
bool isMoreThanItsContent(const std::string& path, const struct stat& status) {
  return status.st_nlink > 1 || ::listxattr(path.c_str(), nullptr, 0) > 0;
}

/// Makes a rename outlast a crash.
void syncFolder(const fs::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;  // a folder that may not be read cannot be synchronised
  ::fsync(descriptor);
  ::close(descriptor);
}

/// Room for all of the content, before the first byte of the old one is lost.
int reserve(int descriptor, off_t size) {
  const int error = size == 0 ? 0 : ::posix_fallocate(descriptor, 0, size);
  return error == EOPNOTSUPP || error == EINVAL ? 0 : error;
}

int copyBytes(int from, int to, off_t size) {
  std::array<char, 1 << 16> block{};
  for (off_t at = 0; at < size;) {
    const ssize_t read = ::pread(from, block.data(), block.size(), at);
    if (read <= 0) return read < 0 ? errno : EIO;
    for (ssize_t done = 0; done < read;) {
      const ssize_t written =
          ::pwrite(to, block.data() + done, static_cast<size_t>(read - done), at + done);
      if (written < 0) return errno;
      done += written;
    }
    at += read;
  }
  return 0;
}

}  // namespace

fs::path folderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

FileReplacement::FileReplacement(const std::string& target) : target_(target) {
  isBeside_ = ::access(folderOf(target).c_str(), W_OK | X_OK) == 0;
  std::error_code error;
  const fs::path folder = isBeside_ ? folderOf(target) : fs::temp_directory_path(error);
  try {
    TemporaryDescriptor made = makeTemporaryFile((folder / ".proportions-").string());
    path_ = std::move(made.path);
    descriptor_ = made.descriptor;
  } catch (const std::system_error& failure) {
    error_ = failure.code().value();
  }
}

FileReplacement::~FileReplacement() {
  if (descriptor_ >= 0) ::close(descriptor_);
  removeTemporary(path_);
}

int FileReplacement::commit() {
  struct stat old {};
  const bool isThere = ::stat(target_.c_str(), &old) == 0;
  if (isThere && (!isBeside_ || isMoreThanItsContent(target_, old))) return copyInto();
  const int error = rename(isThere ? &old : nullptr);
  return error != 0 && isThere ? copyInto() : error;
}

int FileReplacement::rename(const struct stat* old) {
  if (old != nullptr && ::fchown(descriptor_, old->st_uid, old->st_gid) != 0) return errno;
  const mode_t mode = old == nullptr ? newFileMode() : old->st_mode & kPermissions;
  if (::fchmod(descriptor_, mode) != 0 || ::fsync(descriptor_) != 0) return errno;
  if (const int error = keepTemporary(path_, target_)) return error;
  syncFolder(folderOf(target_));
  return 0;
}

int FileReplacement::copyInto() {
  const int to = ::open(target_.c_str(), O_WRONLY | O_CLOEXEC);
  if (to < 0) return errno;
  int error = 0;
  runToItsEnd([&] {
    struct stat content {
    }, old{};
    if (::fstat(descriptor_, &content) != 0 || ::fstat(to, &old) != 0) {
      error = errno;
      return;
    }
    error = reserve(to, content.st_size);
    if (error != 0) {
      // Some of the room may have been reserved: the old file keeps its size.
      if (::ftruncate(to, old.st_size) != 0) error = errno;
      return;
    }
    error = copyBytes(descriptor_, to, content.st_size);
    if (error == 0 && (::ftruncate(to, content.st_size) != 0 || ::fsync(to) != 0)) error = errno;
  });
  ::close(to);
  return error;
}

}  // namespace workbench
