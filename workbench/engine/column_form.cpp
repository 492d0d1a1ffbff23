#include "workbench/engine/column_form.h"

#include <cstddef>
#include <string>

namespace workbench {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

size_t takeDigits(std::string_view& text) {
  size_t count = 0;
  while (count < text.size() && isDigit(text[count])) ++count;
  text.remove_prefix(count);
  return count;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

bool takeSign(std::string_view& text) { return take(text, '-') || take(text, '+'); }

bool equalsLower(std::string_view text, std::string_view lower) {
  if (text.size() != lower.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] + 32) : text[i];
    if (c != lower[i]) return false;
  }
  return true;
}

bool takeTwo(std::string_view& text, int low, int high) {
  if (text.size() < 2 || !isDigit(text[0]) || !isDigit(text[1])) return false;
  const int value = (text[0] - '0') * 10 + (text[1] - '0');
  text.remove_prefix(2);
  return value >= low && value <= high;
}

bool takeDate(std::string_view& text) {
  if (text.size() < 10) return false;
  const int year =
      (text[0] - '0') * 1000 + (text[1] - '0') * 100 + (text[2] - '0') * 10 + (text[3] - '0');
  if (takeDigits(text) != 4 || !take(text, '-')) return false;
  const std::string_view monthDigits = text.substr(0, 2);
  if (!takeTwo(text, 1, 12) || !take(text, '-')) return false;
  const int month = (monthDigits[0] - '0') * 10 + (monthDigits[1] - '0');
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  const bool shortMonth = month == 4 || month == 6 || month == 9 || month == 11;
  return takeTwo(text, 1, month == 2 ? (leap ? 29 : 28) : shortMonth ? 30 : 31);
}

bool takeTime(std::string_view& text) {
  if (!takeTwo(text, 0, 23) || !take(text, ':') || !takeTwo(text, 0, 59)) return false;
  if (!take(text, ':')) return true;
  if (!takeTwo(text, 0, 59)) return false;
  if (!take(text, '.')) return true;
  const size_t digits = takeDigits(text);
  return digits >= 1 && digits <= 6;
}

bool takeOffset(std::string_view& text) {
  if (take(text, 'Z')) return true;
  if (!takeSign(text) || !takeTwo(text, 0, 14)) return false;
  if (text.empty()) return true;
  take(text, ':');
  return takeTwo(text, 0, 59);
}

}  // namespace

std::string_view stripped(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool isNumberText(std::string_view text) {
  text = stripped(text);
  takeSign(text);
  const size_t before = takeDigits(text);
  if (before == 0 && !text.empty() && text.front() != '.') {
    return equalsLower(text, "inf") || equalsLower(text, "infinity") || equalsLower(text, "nan");
  }
  const size_t after = take(text, '.') ? takeDigits(text) : 0;
  if (before + after == 0) return false;
  if (take(text, 'e') || take(text, 'E')) {
    takeSign(text);
    if (takeDigits(text) == 0) return false;
  }
  return text.empty();
}

bool isWholeText(std::string_view text) {
  text = stripped(text);
  takeSign(text);
  const size_t digits = takeDigits(text);
  return digits >= 1 && digits <= 15 && text.empty();
}

bool isBooleanText(std::string_view text) {
  return equalsLower(text, "true") || equalsLower(text, "false");
}

bool isDateText(std::string_view text) { return takeDate(text) && text.empty(); }

bool isTimeText(std::string_view text) { return takeTime(text) && text.empty(); }

bool isDateTimeText(std::string_view text, bool& zoned) {
  if (!takeDate(text)) return false;
  if (text.empty()) return true;
  if ((!take(text, ' ') && !take(text, 'T')) || !takeTime(text)) return false;
  if (text.empty()) return true;
  zoned = true;
  return takeOffset(text) && text.empty();
}

size_t firstInvalidUtf8(std::string_view text) {
  size_t i = 0;
  while (i < text.size()) {
    const auto lead = static_cast<unsigned char>(text[i]);
    size_t length = 1;
    if (lead >= 0x80) {
      if (lead >= 0xC2 && lead <= 0xDF)
        length = 2;
      else if (lead >= 0xE0 && lead <= 0xEF)
        length = 3;
      else if (lead >= 0xF0 && lead <= 0xF4)
        length = 4;
      else
        return i;
      if (i + length > text.size()) return i;
      for (size_t k = 1; k < length; ++k) {
        if ((static_cast<unsigned char>(text[i + k]) & 0xC0U) != 0x80U) return i;
      }
      const auto second = static_cast<unsigned char>(text[i + 1]);
      if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
          (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
        return i;
      }
    }
    i += length;
  }
  return std::string_view::npos;
}

}  // namespace workbench
