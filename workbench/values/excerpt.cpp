#include "workbench/values/excerpt.h"

#include <fmt/format.h>

#include <cstdint>

#include "workbench/text/utf8.h"

namespace workbench {
namespace {

constexpr size_t kMostCharacters = 80;

std::string escaped(unsigned char byte) {
  switch (byte) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return fmt::format("\\x{:02x}", byte);
  }
}

}  // namespace

std::string excerpt(std::string_view text) {
  std::string shown;
  size_t count = 0;
  for (size_t at = 0; at < text.size(); ++count) {
    if (count == kMostCharacters) return shown + "...";
    const size_t start = at;
    const int32_t character = nextCharacter(text, at);
    if (character < 0x20 || character == 0x7F) {
      shown += escaped(static_cast<unsigned char>(text[start]));
      at = start + 1;  // each byte of a broken sequence by itself
    } else if (character >= 0x80 && character < 0xA0) {
      shown += fmt::format("\\u{:04x}", character);
    } else {
      shown += text.substr(start, at - start);
    }
  }
  return shown;
}

}  // namespace workbench
