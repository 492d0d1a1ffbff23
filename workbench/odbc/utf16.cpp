#include "workbench/odbc/utf16.h"

#include <cstdint>

#include "workbench/text/utf8.h"

namespace workbench {
namespace {

constexpr uint32_t kReplaced = 0xFFFD;
constexpr uint32_t kBeyond = 0x10000;  // the first character of two units

bool isHigh(uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void appendCharacter(uint32_t character, std::string& text) {
  const auto put = [&](uint32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (character < 0x80) return put(character);
  if (character < 0x800) {
    put(0xC0 | character >> 6U);
  } else {
    if (character < kBeyond) {
      put(0xE0 | character >> 12U);
    } else {
      put(0xF0 | character >> 18U);
      put(0x80 | (character >> 12U & 0x3F));
    }
    put(0x80 | (character >> 6U & 0x3F));
  }
  put(0x80 | (character & 0x3F));
}

}  // namespace

std::vector<SQLWCHAR> utf16Of(std::string_view text) {
  std::vector<SQLWCHAR> units;
  units.reserve(text.size() + 1);
  forEachCharacter(text, [&](int32_t found, std::string_view) {
    const uint32_t character = found < 0 ? kReplaced : static_cast<uint32_t>(found);
    if (character < kBeyond) {
      units.push_back(static_cast<SQLWCHAR>(character));
      return;
    }
    units.push_back(static_cast<SQLWCHAR>(0xD800 + ((character - kBeyond) >> 10U)));
    units.push_back(static_cast<SQLWCHAR>(0xDC00 + ((character - kBeyond) & 0x3FF)));
  });
  units.push_back(0);
  return units;
}

void appendUtf8(const SQLWCHAR* units, size_t count, std::string& text) {
  for (size_t i = 0; i < count; ++i) {
    const uint32_t unit = units[i];
    if (isHigh(unit) && i + 1 < count && isLow(units[i + 1])) {
      const uint32_t low = units[++i];
      appendCharacter(kBeyond + ((unit - 0xD800) << 10U) + (low - 0xDC00), text);
    } else {
      appendCharacter(isHigh(unit) || isLow(unit) ? kReplaced : unit, text);
    }
  }
}

}  // namespace workbench
