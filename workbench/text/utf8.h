/// The one decoder of UTF-8, and what keeps texts well-formed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace workbench {

/// What stands for bytes that are not UTF-8: U+FFFD.
inline constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// For nextCharacter: the character beyond ASCII that begins at `at`.
int32_t nextBeyondAscii(std::string_view text, size_t& at);

/// The code point that begins at `at`, which must lie inside the text; `at` moves to the next one.
/// Negative for bytes that are not UTF-8: at least one is passed over, and no more than belong to
/// the broken sequence.
inline int32_t nextCharacter(std::string_view text, size_t& at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead >= 0x80) return nextBeyondAscii(text, at);
  ++at;
  return lead;
}

/// Calls `visit(codePoint, bytes)` for each character, with a code point as of nextCharacter.
template <typename Visit>
void forEachCharacter(std::string_view text, Visit visit) {
  for (size_t at = 0; at < text.size();) {
    const size_t start = at;
    const int32_t character = nextCharacter(text, at);
    visit(character, text.substr(start, at - start));
  }
}

/// The position of the first byte that is not part of a UTF-8 character; npos when there is none.
size_t firstInvalidUtf8(std::string_view text);

/// True for well-formed UTF-8.
bool isUtf8(std::string_view text);

/// The text with every byte that is not UTF-8 shown as the replacement character.
std::string validUtf8(std::string_view text);

}  // namespace workbench
