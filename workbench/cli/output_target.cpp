#include "workbench/cli/output_target.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <streambuf>
#include <utility>
#include <vector>

#include "workbench/cli/interruption.h"

namespace workbench {
namespace {

namespace fs = std::filesystem;

/// A stream over a file descriptor with one large buffer; remembers what went wrong first.
class DescriptorBuffer : public std::streambuf {
 public:
  explicit DescriptorBuffer(int descriptor) : descriptor_(descriptor), buffer_(1 << 18) {
    setp(buffer_.data(), buffer_.data() + buffer_.size());
  }
  int error() const { return error_; }

 protected:
  int overflow(int c) override {
    if (sync() != 0) return traits_type::eof();
    if (c != traits_type::eof()) sputc(static_cast<char>(c));
    return 0;
  }
  int sync() override {
    const char* from = pbase();
    while (from < pptr() && error_ == 0) {
      const ssize_t written = ::write(descriptor_, from, static_cast<size_t>(pptr() - from));
      if (written >= 0) {
        from += written;
      } else if (errno != EINTR) {
        error_ = errno;
      }
    }
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    return error_ == 0 ? 0 : -1;
  }

 private:
  int descriptor_;
  std::vector<char> buffer_;
  int error_ = 0;
};

/// 0, or what went wrong.
int writeTo(int descriptor, const std::function<void(std::ostream&)>& write) {
  DescriptorBuffer buffer(descriptor);
  std::ostream out(&buffer);
  write(out);
  out.flush();
  return buffer.error();
}

[[noreturn]] void cannotWrite(const std::string& path, int error) {
  throw OutputError("the output " + path + " cannot be written: " + std::strerror(error));
}

fs::path folderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

/// A named pipe or a device is written to as it is; there is nothing to rename.
bool isSpecial(const std::string& path) {
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

/// What mkstemp asks for at the end of a name: it puts characters that no other file has there.
constexpr const char* kMadeUnique = "XXXXXX";

/// A file that goes again unless it is kept.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& path)
      : path_((folderOf(path) / (std::string(".proportions-") + kMadeUnique)).string()) {
    descriptor_ = ::mkstemp(path_.data());
    if (descriptor_ < 0) cannotWrite(path, errno);
    guard_.arm(path_);
  }
  ~TemporaryFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!path_.empty()) ::unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int descriptor() const { return descriptor_; }

  /// 0, or what went wrong. Rights are those that a new file would have got.
  int keepAs(const std::string& path) {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (::fchmod(descriptor_, 0666 & ~mask) != 0 || ::close(std::exchange(descriptor_, -1)) != 0)
      return errno;
    if (::rename(path_.c_str(), path.c_str()) != 0) return errno;
    path_.clear();
    return 0;
  }

 private:
  std::string path_;
  RemoveOnSignal guard_;
  int descriptor_ = -1;
};

}  // namespace

void checkWritable(const std::string& path) {
  if (fs::is_directory(path))
    throw OutputError("the output " + path + " is a directory; name a file");
  if (isSpecial(path)) return;
  if (!fs::is_directory(folderOf(path))) {
    throw OutputError("the output " + path + " cannot be written: there is no folder " +
                      folderOf(path).string());
  }
  if (::access(folderOf(path).c_str(), W_OK) != 0) cannotWrite(path, errno);
}

void writeFile(const std::string& path, const std::function<void(std::ostream&)>& write) {
  if (isSpecial(path)) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) cannotWrite(path, errno);
    const int error = writeTo(::fileno(file), write);
    std::fclose(file);
    if (error != 0 && error != EPIPE) cannotWrite(path, error);
    return;
  }
  TemporaryFile file(path);
  if (const int error = writeTo(file.descriptor(), write)) cannotWrite(path, error);
  if (const int error = file.keepAs(path)) cannotWrite(path, error);
}

void writeStandardOutput(const std::function<void(std::ostream&)>& write) {
  const int error = writeTo(STDOUT_FILENO, write);
  if (error != 0 && error != EPIPE) cannotWrite("(standard output)", error);
}

}  // namespace workbench
