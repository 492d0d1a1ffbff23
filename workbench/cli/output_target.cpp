#include "workbench/cli/output_target.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "workbench/cli/descriptor_stream.h"
#include "workbench/cli/file_replacement.h"

namespace workbench {
namespace {

namespace fs = std::filesystem;

/// As many links as the system itself would follow.
constexpr int kMostLinks = 40;

/// The number of the open descriptor that a path like /proc/self/fd/1 or /dev/fd/1 stands for;
/// negative for any other path. What it leads to must not be taken for a file with a name: it may
/// be open for appending, shared, or removed.
int descriptorOf(const std::string& path) {
  const std::string name = fs::path(path).filename();
  if (name.empty() || name.size() > 9 || name.find_first_not_of("0123456789") != std::string::npos)
    return -1;
  std::error_code none;
  const fs::path folder = fs::canonical(folderOf(path), none);
  if (none) return -1;
  for (const char* own : {"/proc/self/fd", "/proc/thread-self/fd"}) {
    if (folder == fs::canonical(own, none)) return std::stoi(name);
  }
  return -1;
}

}  // namespace

OutputTarget::OutputTarget(const std::string& path) : path_(path == "-" ? "" : path) {
  if (path_.empty()) {
    kind_ = Kind::kDescriptor;
    descriptor_ = STDOUT_FILENO;
    return;
  }
  follow(path_);
  if (kind_ == Kind::kDescriptor) checkDescriptor();
  if (kind_ == Kind::kFile) checkFile();
}

void OutputTarget::follow(const std::string& path) {
  file_ = path;
  struct stat status {};
  for (int links = 0; links <= kMostLinks; ++links) {
    descriptor_ = descriptorOf(file_);
    if (descriptor_ >= 0) {
      kind_ = Kind::kDescriptor;
      return;
    }
    const bool isThere = ::lstat(file_.c_str(), &status) == 0;
    if (!isThere || !S_ISLNK(status.st_mode)) {
      const bool isFile = !isThere || S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
      kind_ = isFile ? Kind::kFile : Kind::kSpecial;
      return;
    }
    std::error_code error;
    const fs::path next = fs::read_symlink(file_, error);
    if (error) fail(error.value());
    file_ = next.is_absolute() ? next : folderOf(file_) / next;
  }
  fail(ELOOP);
}

void OutputTarget::checkDescriptor() const {
  const int flags = ::fcntl(descriptor_, F_GETFL);
  if (flags < 0) fail(errno);
  if ((flags & O_ACCMODE) == O_RDONLY) fail(EBADF);
}

void OutputTarget::checkFile() const {
  const fs::path folder = folderOf(file_);
  struct stat status {};
  if (::stat(file_.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode))
      throw OutputError("the output " + path_ + " is a directory; name a file");
    // Rights do not bind the superuser, but a file without any right to write is meant to stay.
    constexpr mode_t kMayWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    if ((status.st_mode & kMayWrite) == 0 || ::access(file_.c_str(), W_OK) != 0) {
      throw OutputError("the output " + path_ +
                        " is there already and read-only; name another file");
    }
    return;
  }
  if (errno != ENOENT && errno != ENOTDIR) fail(errno);
  if (!fs::is_directory(folder)) {
    throw OutputError("the output " + path_ + " cannot be written: there is no folder " +
                      folder.string());
  }
  if (::access(folder.c_str(), W_OK) != 0) fail(errno);
}

std::optional<FileIdentity> OutputTarget::identity() const {
  return kind_ == Kind::kDescriptor ? identityOf(descriptor_) : identityOf(file_);
}

void OutputTarget::write(const std::function<void(std::ostream&)>& write) const {
  if (kind_ == Kind::kFile) return writeFile(write);
  if (kind_ == Kind::kDescriptor) return writeAsItIs(descriptor_, write);
  const int descriptor = ::open(file_.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) fail(errno);
  try {
    writeAsItIs(descriptor, write);
  } catch (...) {
    ::close(descriptor);
    throw;
  }
  ::close(descriptor);
}

void OutputTarget::writeAsItIs(int descriptor,
                               const std::function<void(std::ostream&)>& write) const {
  const int error = writeTo(descriptor, write);
  // Standard output belongs to whoever reads it: `head` has had enough.
  const bool isEnough = error == EPIPE && path_.empty();
  if (error != 0 && !isEnough) fail(error);
}

void OutputTarget::writeFile(const std::function<void(std::ostream&)>& write) const {
  FileReplacement replacement(file_);
  if (replacement.error() != 0) fail(replacement.error());
  if (const int error = writeTo(replacement.descriptor(), write)) fail(error);
  if (const int error = replacement.commit()) fail(error);
}

void OutputTarget::fail(int error) const {
  throw OutputError("the output " + (path_.empty() ? std::string("(standard output)") : path_) +
                    " cannot be written: " + std::strerror(error));
}

}  // namespace workbench
