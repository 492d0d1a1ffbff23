#include "workbench/json/json_records.h"

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

/// Numbers are handed on as they are spelt. The wide type is for those beyond a double, which
/// matter only in columns that are named and otherwise numeric.
using Json =
    nlohmann::basic_json<std::map, std::vector, std::string, bool, int64_t, uint64_t, long double>;

constexpr size_t kBlock = size_t{1} << 18;
/// A text that is never closed would take all the memory there is.
constexpr size_t kLongestToken = size_t{128} << 20;

/// The bytes of the text, counted by lines.
class Bytes {
 public:
  Bytes(TextStream& text, const std::string& label)
      : text_(text), label_(label), block_(kBlock, '\0') {}

  bool atEnd() { return at_ == filled_ && !fill(); }
  char current() const { return block_[at_]; }
  /// The parser would take a NUL byte for the end of the text.
  char currentOfText() const {
    if (current() == '\0') refuseNul();
    return current();
  }
  void next() {
    if (++sinceEvent_ > kLongestToken) refuseLong();
    const char passed = block_[at_++];
    // CR, LF and CR LF end a line each.
    if (passed == '\r' || (passed == '\n' && !afterReturn_)) ++line_;
    afterReturn_ = passed == '\r';
  }
  bool take(std::string_view wanted) {
    for (size_t i = 0; i < wanted.size(); ++i) {
      if (atEnd() || current() != wanted[i]) return i == 0 ? false : refuseStart();
      ++at_;
    }
    return true;
  }
  void skipBlanks() {
    while (!atEnd() && (current() == ' ' || current() == '\t' || isLineEnd())) next();
  }
  /// The parser has understood what it took.
  void endToken() { sinceEvent_ = 0; }
  bool isLineEnd() const { return current() == '\n' || current() == '\r'; }
  uint64_t line() const { return line_; }
  const std::string& label() const { return label_; }

 private:
  bool fill() {
    filled_ = text_.read(block_.data(), block_.size());
    at_ = 0;
    return filled_ > 0;
  }
  bool refuseStart() const {
    throw DataError(fmt::format("{}, line 1: the bytes at the beginning are not UTF-8.", label_));
  }

  [[noreturn]] void refuseLong() const {
    throw DataError(
        fmt::format("{}, line {}: there is a text, or a run of blanks, of more than {} bytes. Look "
                    "for a double "
                    "quote that is never closed.",
                    label_, line_, kLongestToken));
  }
  [[noreturn]] void refuseNul() const {
    throw DataError(
        fmt::format("{}, line {}: there is a NUL byte, so this is not valid JSON.", label_, line_));
  }

  TextStream& text_;
  const std::string& label_;
  std::string block_;
  size_t at_ = 0;
  size_t filled_ = 0;
  size_t sinceEvent_ = 0;  // bytes that the parser took and has not told of
  uint64_t line_ = 1;
  bool afterReturn_ = false;
};

/// The bytes as the parser wants them; with `lineOnly` they end with the line.
struct ByteIterator {
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = char;

  Bytes* bytes = nullptr;  // null: the end
  bool lineOnly = false;

  char operator*() const { return bytes->currentOfText(); }
  ByteIterator& operator++() {
    bytes->next();
    return *this;
  }
  ByteIterator operator++(int) {
    ByteIterator before = *this;
    ++*this;
    return before;
  }
  bool ended() const {
    return bytes == nullptr || bytes->atEnd() || (lineOnly && bytes->isLineEnd());
  }
  friend bool operator==(const ByteIterator& a, const ByteIterator& b) {
    return a.ended() == b.ended();
  }
  friend bool operator!=(const ByteIterator& a, const ByteIterator& b) { return !(a == b); }
};

/// What the parser calls. Records are the objects `recordDepth` deep.
class Walk {
 public:
  Walk(Bytes& bytes, JsonVisitor& visitor, size_t recordDepth)
      : bytes_(bytes), visitor_(visitor), recordDepth_(recordDepth) {}

  bool null() { return scalar({JsonValue::Type::kNull, {}}); }
  bool boolean(bool value) { return scalar({JsonValue::Type::kBoolean, value ? "true" : "false"}); }
  bool number_integer(int64_t value) { return whole(fmt::format_int(value)); }
  bool number_unsigned(uint64_t value) { return whole(fmt::format_int(value)); }
  bool number_float(long double, const std::string& spelt) {
    return scalar({JsonValue::Type::kNumber, spelt});
  }
  bool string(const std::string& value) {
    refuseNul(value);
    return scalar({JsonValue::Type::kString, value});
  }
  bool binary(const Json::binary_t&) { return false; }  // JSON has none
  bool key(const std::string& name) {
    bytes_.endToken();
    refuseNul(name);
    if (depth_ == recordDepth_ + 1) {
      key_ = name;
    } else if (nestedWanted_) {
      separate();
      nested_ += Json(name).dump() + ":";
      separator_ = "";
    }
    return true;
  }
  bool start_object(size_t) {
    bytes_.endToken();
    if (depth_ == recordDepth_) {
      visitor_.beginRecord(bytes_.line());
    } else {
      beginNested('{');
    }
    ++depth_;
    return true;
  }
  bool end_object() {
    bytes_.endToken();
    if (--depth_ == recordDepth_) {
      visitor_.endRecord();
    } else {
      endNested('}');
    }
    return true;
  }
  bool start_array(size_t) {
    bytes_.endToken();
    if (depth_ >= recordDepth_) beginNested('[');
    ++depth_;
    return true;
  }
  bool end_array() {
    bytes_.endToken();
    if (--depth_ > recordDepth_) endNested(']');
    return true;
  }
  bool parse_error(size_t, const std::string& token, const Json::exception& error) {
    if (dynamic_cast<const Json::out_of_range*>(&error) != nullptr) {
      refuse(fmt::format("{}: the number '{}' is too large", excerpt(key_), excerpt(token)));
    }
    refuse(
        fmt::format("this is not valid JSON near '{}'. Give an array of objects, or one object "
                    "a line",
                    excerpt(token)));
  }

 private:
  template <typename Formatted>
  bool whole(const Formatted& text) {
    return scalar({JsonValue::Type::kNumber, {text.data(), text.size()}});
  }
  bool scalar(const JsonValue& value) {
    bytes_.endToken();
    if (depth_ <= recordDepth_) refuseRecord();
    if (depth_ == recordDepth_ + 1) {
      visitor_.member(key_, value, bytes_.line());
    } else if (nestedWanted_) {
      separate();
      nested_ += value.type == JsonValue::Type::kString ? Json(value.text).dump()
                 : value.type == JsonValue::Type::kNull ? "null"
                                                        : std::string(value.text);
    }
    return true;
  }
  void beginNested(char bracket) {
    if (depth_ < recordDepth_ + 1) refuseRecord();
    if (depth_ == recordDepth_ + 1) {
      nestedWanted_ = visitor_.wantsNested(key_);
      nested_.clear();
      separator_ = "";
    }
    if (!nestedWanted_) return;
    separate();
    nested_ += bracket;
    separator_ = "";
  }
  void endNested(char bracket) {
    if (nestedWanted_) nested_ += bracket;
    separator_ = ",";
    if (depth_ != recordDepth_ + 1) return;
    visitor_.member(key_, {JsonValue::Type::kNested, nested_}, bytes_.line());
    nestedWanted_ = false;
  }
  /// Writes what stands between two members or elements.
  void separate() {
    nested_ += separator_;
    separator_ = ",";
  }
  void refuseNul(const std::string& text) {
    if (text.find('\0') != std::string::npos) refuse("a string holds a NUL character; remove it");
  }
  [[noreturn]] void refuseRecord() {
    refuse("a record must be an object, with a value for each name");
  }
  [[noreturn]] void refuse(const std::string& what) const {
    throw DataError(fmt::format("{}, line {}: {}.", bytes_.label(), bytes_.line(), what));
  }

  Bytes& bytes_;
  JsonVisitor& visitor_;
  size_t recordDepth_;
  size_t depth_ = 0;
  std::string key_;
  bool nestedWanted_ = false;
  std::string nested_;  // the JSON of the nested value at hand
  const char* separator_ = "";
};

void parse(Bytes& bytes, JsonVisitor& visitor, bool lineOnly) {
  Walk walk(bytes, visitor, lineOnly ? 0 : 1);
  Json::sax_parse(ByteIterator{&bytes, lineOnly}, ByteIterator{}, &walk);
}

}  // namespace

void readJsonRecords(TextStream& text, const std::string& label, JsonVisitor& visitor) {
  Bytes bytes(text, label);
  bytes.take("\xEF\xBB\xBF");
  bytes.skipBlanks();
  if (bytes.atEnd()) throw DataError(fmt::format("{}: the file is empty.", label));
  if (bytes.current() == '[') return parse(bytes, visitor, false);
  for (; !bytes.atEnd(); bytes.skipBlanks()) parse(bytes, visitor, true);
}

}  // namespace workbench
