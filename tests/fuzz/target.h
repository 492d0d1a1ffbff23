/// What every fuzz target shares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// Runs one input. The target aborts when a promise is broken; it never reads past the bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzz {

/// Ends the process with a message when a promise does not hold, so that the input is kept.
inline void promise(bool holds, const char* what, const std::string& detail = "") {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n%s\n", what, detail.c_str());
  std::abort();
}

/// Takes choices from the bytes of an input; at its end every choice is the first.
class Choices {
 public:
  Choices(const uint8_t* data, size_t size) : data_(data), end_(data + size) {}
  bool atEnd() const { return data_ == end_; }
  uint8_t byte() { return data_ == end_ ? uint8_t{0} : *data_++; }
  /// A number below `count`, which is between 1 and 256.
  size_t below(size_t count) { return byte() % count; }
  bool flag() { return (byte() & 1U) != 0; }
  template <typename T, size_t N>
  const T& of(const T (&list)[N]) {
    return list[below(N)];
  }

 private:
  const uint8_t* data_;
  const uint8_t* end_;
};

}  // namespace fuzz
