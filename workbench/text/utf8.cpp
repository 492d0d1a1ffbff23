#include "workbench/text/utf8.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>

namespace workbench {
namespace {

/// Bytes that are looked at together: most text is ASCII.
constexpr size_t kRun = 32;

bool isAsciiRun(const char* data) {
  constexpr uint64_t kHighBits = 0x8080'8080'8080'8080;
  uint64_t words[kRun / sizeof(uint64_t)];
  std::memcpy(words, data, sizeof words);
  return ((words[0] | words[1] | words[2] | words[3]) & kHighBits) == 0;
}

}  // namespace

int32_t nextBeyondAscii(std::string_view text, size_t& at) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data()) + at;
  const auto length = static_cast<int32_t>(std::min<size_t>(U8_MAX_LENGTH, text.size() - at));
  int32_t used = 0;
  UChar32 character = 0;
  U8_NEXT(bytes, used, length, character);
  at += static_cast<size_t>(used);
  return character;
}

size_t firstInvalidUtf8(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    while (text.size() - at >= kRun && isAsciiRun(text.data() + at)) at += kRun;
    if (at == text.size()) break;
    const size_t start = at;
    if (nextCharacter(text, at) < 0) return start;
  }
  return std::string_view::npos;
}

bool isUtf8(std::string_view text) { return firstInvalidUtf8(text) == std::string_view::npos; }

std::string validUtf8(std::string_view text) {
  if (isUtf8(text)) return std::string(text);
  std::string result;
  forEachCharacter(text, [&result](int32_t character, std::string_view bytes) {
    result += character < 0 ? kReplacement : bytes;
  });
  return result;
}

}  // namespace workbench
