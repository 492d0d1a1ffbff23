#include "workbench/cli/descriptor_stream.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <streambuf>
#include <vector>

namespace workbench {
namespace {

/// One large buffer before a descriptor; remembers what went wrong first.
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

}  // namespace

int writeTo(int descriptor, const std::function<void(std::ostream&)>& write) {
  DescriptorBuffer buffer(descriptor);
  std::ostream out(&buffer);
  write(out);
  out.flush();
  return buffer.error();
}

void holdStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) >= 0) continue;
    // The lowest number is given: this one. Reading fails, and so does writing to the others.
    const int access = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (::open("/dev/null", access) < 0) return;
  }
}

}  // namespace workbench
