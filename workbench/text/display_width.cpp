#include "workbench/text/display_width.h"

#include <unicode/uchar.h>

#include <array>
#include <cstdio>

#include "workbench/text/utf8.h"

namespace workbench {
namespace {

size_t characterWidth(UChar32 character) {
  if (character < 0) return 1;
  const int8_t type = u_charType(character);
  if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) return 0;
  const int32_t width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_FULLWIDTH || width == U_EA_WIDE ? 2 : 1;
}

bool mustBeEscaped(UChar32 character) {
  switch (u_charType(character)) {
    case U_CONTROL_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
      return true;
    case U_FORMAT_CHAR:
      return u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL) != 0 || character == 0xFEFF;
    default:
      return false;
  }
}

std::string escape(UChar32 character) {
  if (character == '\n') return "\\n";
  if (character == '\t') return "\\t";
  if (character == '\r') return "\\r";
  std::array<char, 12> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "\\u%04X", static_cast<unsigned>(character));
  return buffer.data();
}

}  // namespace

size_t displayWidth(std::string_view text) {
  size_t width = 0;
  forEachCharacter(text, [&width](UChar32 c, std::string_view) { width += characterWidth(c); });
  return width;
}

std::string printable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  forEachCharacter(text, [&result](UChar32 c, std::string_view bytes) {
    if (c < 0) {
      result += kReplacement;
    } else if (mustBeEscaped(c)) {
      result += escape(c);
    } else {
      result += bytes;
    }
  });
  return result;
}

}  // namespace workbench
