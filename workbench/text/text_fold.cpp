#include "workbench/text/text_fold.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace workbench {
namespace {

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

icu::UnicodeString decode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string encode(const icu::UnicodeString& text) {
  std::string bytes;
  text.toUTF8String(bytes);
  return bytes;
}

std::string mapAscii(std::string_view text, char first, char last, int shift) {
  std::string mapped(text);
  for (char& c : mapped) {
    if (c >= first && c <= last) c = static_cast<char>(c + shift);
  }
  return mapped;
}

}  // namespace

std::string foldCase(std::string_view text) {
  if (isAscii(text)) return mapAscii(text, 'A', 'Z', 'a' - 'A');
  return encode(decode(text).foldCase());
}

std::string upperCase(std::string_view text) {
  if (isAscii(text)) return mapAscii(text, 'a', 'z', 'A' - 'a');
  return encode(decode(text).toUpper(icu::Locale::getRoot()));
}

}  // namespace workbench
