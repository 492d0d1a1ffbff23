#include "workbench/output/utf8.h"

#include <unicode/utf8.h>

#include <cstdint>

#include "workbench/text/display_width.h"

namespace workbench {

std::string validUtf8(std::string_view text) {
  if (isUtf8(text)) return std::string(text);
  std::string result;
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const size_t length = text.size();
  for (size_t at = 0; at < length;) {
    const size_t start = at;
    UChar32 character = 0;
    U8_NEXT(bytes, at, length, character);
    if (character < 0) {
      result += "\xEF\xBF\xBD";
    } else {
      result += text.substr(start, at - start);
    }
  }
  return result;
}

}  // namespace workbench
