/// What the process that takes a file apart tells the one that asked for it.
///
/// The first runs a library on a file that anybody may have written, so that nothing it sends is
/// taken on trust: every length is checked against what has arrived.
#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace workbench::wire {

enum class Kind : uint32_t {
  kHead,     ///< encoding, number of cases
  kColumn,   ///< a column, in file order
  kLabel,    ///< a value with its label, of a named set
  kBlock,    ///< cases, column by column
  kProblem,  ///< why reading ended early
  kEnd       ///< the number of cases that were sent
};

/// Why reading ended early.
enum class Problem : uint8_t {
  kDamaged,
  kCutOff,
  kCaseCount,
  kTooManyCases,
  kCompression,
  kVersion,
  kMemory,
  kSeveralDataSets,
  kBlankCases,
  kLongText,
  kUnknownMissing,
  kLabels
};
inline constexpr uint8_t kProblems = 12;

/// A message begins with this; `size` bytes follow.
struct Header {
  uint32_t kind = 0;
  uint32_t size = 0;
};

/// No message is larger.
inline constexpr size_t kLargestMessage = size_t{8} << 20;
/// A block ends at this many cases, or once it holds this many bytes.
inline constexpr size_t kBlockCases = 8192;
inline constexpr size_t kBlockBytes = size_t{1} << 20;
/// Longer texts are refused where they stand.
inline constexpr size_t kLongestText = size_t{1} << 16;

/// A missing number: NaN with its letter, or without one for what is system-missing.
double missingNumber(char letter);
/// The letter of such a number, '\0' when it has none.
char missingLetter(double number);

/// What a message holds is not what messages hold.
class Malformed : public std::runtime_error {
 public:
  Malformed() : std::runtime_error("malformed message") {}
};

/// Puts a message together.
class Writer {
 public:
  template <typename Value>
  void put(Value value) {
    bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  void putText(std::string_view text) {
    put(static_cast<uint32_t>(text.size()));
    bytes_ += text;
  }
  void putNumbers(const double* numbers, size_t count) {
    bytes_.append(reinterpret_cast<const char*>(numbers), count * sizeof *numbers);
  }
  const std::string& bytes() const { return bytes_; }
  void clear() { bytes_.clear(); }

 private:
  std::string bytes_;
};

/// Takes a message apart. Throws Malformed instead of reading beyond its end.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}
  template <typename Value>
  Value get() {
    Value value;
    const std::string_view bytes = take(sizeof value);
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
  }
  std::string_view getText() { return take(get<uint32_t>()); }
  std::string_view getBytes(size_t count) { return take(count); }
  /// Throws Malformed unless all was read.
  void end() const {
    if (!rest_.empty()) throw Malformed();
  }

 private:
  std::string_view take(size_t count) {
    if (count > rest_.size()) throw Malformed();
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }
  std::string_view rest_;
};

}  // namespace workbench::wire
