/// Gathers small pieces of text into large writes.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace workbench {

/// Writes to a stream when enough has come together, and the rest at finish(). What goes wrong
/// shows in the stream's state.
class Writer {
 public:
  explicit Writer(std::ostream& out) : out_(out) { buffer_.reserve(kSize + 4096); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  Writer& operator<<(std::string_view text) {
    buffer_ += text;
    if (buffer_.size() >= kSize) finish();
    return *this;
  }
  Writer& operator<<(char character) { return *this << std::string_view(&character, 1); }

  void finish() {
    out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
  }

 private:
  static constexpr size_t kSize = size_t{1} << 16;

  std::ostream& out_;
  std::string buffer_;
};

}  // namespace workbench
