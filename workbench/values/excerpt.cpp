#include "workbench/values/excerpt.h"

#include <fmt/format.h>

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

size_t characterLength(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                        : lead >= 0xE0 && lead <= 0xEF ? 3
                        : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                       : 0;
  if (length == 0 || length > text.size()) return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return 0;
  }
  // Overlong forms, surrogates, and what lies beyond U+10FFFF.
  const unsigned second = byte(1);
  const bool bad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                   (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
  return bad ? 0 : length;
}

std::string excerpt(std::string_view text) {
  std::string shown;
  for (size_t count = 0; !text.empty(); ++count) {
    if (count == kMostCharacters) return shown + "...";
    const size_t length = characterLength(text);
    const auto lead = static_cast<unsigned char>(text.front());
    const bool c1 = length == 2 && lead == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0;
    if (length == 0 || lead < 0x20 || lead == 0x7F) {
      shown += escaped(lead);
    } else if (c1) {
      shown += fmt::format("\\u{:04x}", static_cast<unsigned char>(text[1]));
    } else {
      shown += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return shown;
}

}  // namespace workbench
