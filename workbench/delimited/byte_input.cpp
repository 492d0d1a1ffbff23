#include "workbench/delimited/byte_input.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "workbench/system/file_identity.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr int kPollMilliseconds = 50;
constexpr int kPipeBytes = 1 << 20;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ > STDIN_FILENO) close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  int get() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

 private:
  int number_;
};

/// Without waiting: a pipe is opened before anything writes to it. Throws DataError.
Descriptor openFile(const std::string& path, const std::string& label) {
  Descriptor file(path == "-" ? STDIN_FILENO
                              : open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (file.isOpen()) return file;
  throw DataError(fmt::format("{}: {}.", label,
                              errno == ENOENT ? "there is no such file" : std::strerror(errno)));
}

[[noreturn]] void failToRead(const std::string& label) {
  throw DataError(fmt::format("{}: cannot be read ({}).", label, std::strerror(errno)));
}

struct stat statusOf(const Descriptor& file, const std::string& label) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0) failToRead(label);
  return status;
}

class RegularInput final : public ByteInput {
 public:
  RegularInput(Descriptor file, const struct stat& status, std::string path, std::string label)
      : file_(std::move(file)), status_(status), path_(std::move(path)), label_(std::move(label)) {
    // Standard input may have been read from before.
    const off_t begin = lseek(file_.get(), 0, SEEK_CUR);
    begin_ = begin > 0 ? static_cast<uint64_t>(begin) : 0;
    posix_fadvise(file_.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
  }

  size_t readAt(uint64_t offset, char* to, size_t most) override {
    if (!file_.isOpen()) file_ = openFile(path_, label_);
    for (;;) {
      const ssize_t count = pread(file_.get(), to, most, static_cast<off_t>(begin_ + offset));
      if (count >= 0) return static_cast<size_t>(count);
      if (errno != EINTR) failToRead(label_);
    }
  }

  void release() override {
    if (path_ != "-") file_ = Descriptor(-1);
  }

  int64_t size() const override { return status_.st_size - static_cast<int64_t>(begin_); }

  void refuseChanged() const override {
    struct stat now {};
    const bool there =
        path_ == "-" ? fstat(file_.get(), &now) == 0 : stat(path_.c_str(), &now) == 0;
    if (there && isUnchanged(status_, now)) return;
    throw DataError(fmt::format(
        "{}: the file was changed while it was read. Run the command again when it is complete.",
        label_));
  }

 private:
  Descriptor file_;
  struct stat status_;
  std::string path_;
  std::string label_;
  uint64_t begin_ = 0;
};

/// A file without a name, which goes with the descriptor.
Descriptor temporaryFile() {
  const char* variable = std::getenv("TMPDIR");
  const std::string folder = variable != nullptr && *variable != '\0' ? variable : "/tmp";
  int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (file < 0) {
    std::string name = folder + "/proportions.XXXXXX";
    file = mkostemp(name.data(), O_CLOEXEC);
    if (file >= 0) unlink(name.c_str());
  }
  if (file < 0) {
    throw DataError(
        fmt::format("{}: no temporary file can be made there ({}). Set TMPDIR to a "
                    "folder that can be written to.",
                    folder, std::strerror(errno)));
  }
  return Descriptor(file);
}

/// Bytes that come once are kept.
class PipeInput final : public ByteInput {
 public:
  PipeInput(Descriptor pipe, std::string label, const std::atomic<bool>* interrupted)
      : pipe_(std::move(pipe)),
        kept_(temporaryFile()),
        label_(std::move(label)),
        interrupted_(interrupted) {
#ifdef F_SETPIPE_SZ
    // Where it is allowed: whoever writes and this process wait for each other less often.
    fcntl(pipe_.get(), F_SETPIPE_SZ, kPipeBytes);
#endif
  }

  size_t readAt(uint64_t offset, char* to, size_t most) override {
    if (offset < size_) return readKept(offset, to, std::min<uint64_t>(most, size_ - offset));
    if (ended_) return 0;
    const size_t count = readPipe(to, most);
    ended_ = count == 0;
    keep(to, count);
    return count;
  }

  int64_t size() const override { return ended_ ? static_cast<int64_t>(size_) : -1; }

 private:
  size_t readKept(uint64_t offset, char* to, size_t most) const {
    const ssize_t count = pread(kept_.get(), to, most, static_cast<off_t>(offset));
    if (count <= 0) failToRead(label_);
    return static_cast<size_t>(count);
  }

  size_t readPipe(char* to, size_t most) const {
    for (;;) {
      // A signal that sets the flag between the test and poll() is seen after the timeout.
      throwIfSet(interrupted_);
      pollfd ready{pipe_.get(), POLLIN, 0};
      const int state = poll(&ready, 1, kPollMilliseconds);
      if (state < 0 && errno != EINTR) failToRead(label_);
      if (state <= 0) continue;
      const ssize_t count = ::read(pipe_.get(), to, most);
      if (count >= 0) return static_cast<size_t>(count);
      if (errno != EINTR && errno != EAGAIN) failToRead(label_);
    }
  }

  void keep(const char* data, size_t count) {
    for (size_t done = 0; done < count;) {
      const ssize_t written =
          pwrite(kept_.get(), data + done, count - done, static_cast<off_t>(size_));
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) {
        throw DataError(fmt::format(
            "{}: cannot be kept in a temporary file ({}). Set TMPDIR to a folder with more room.",
            label_, std::strerror(errno)));
      }
      done += static_cast<size_t>(written);
      size_ += static_cast<uint64_t>(written);
    }
  }

  Descriptor pipe_;
  Descriptor kept_;
  std::string label_;
  const std::atomic<bool>* interrupted_;
  uint64_t size_ = 0;
  bool ended_ = false;
};

}  // namespace

std::unique_ptr<ByteInput> openInput(const std::string& path, const std::string& label,
                                     const std::atomic<bool>* interrupted) {
  Descriptor file = openFile(path, label);
  const struct stat status = statusOf(file, label);
  if (S_ISDIR(status.st_mode)) throw DataError(fmt::format("{}: this is a folder.", label));
  if (S_ISREG(status.st_mode)) {
    return std::make_unique<RegularInput>(std::move(file), status, path, label);
  }
  return std::make_unique<PipeInput>(std::move(file), label, interrupted);
}

}  // namespace workbench
