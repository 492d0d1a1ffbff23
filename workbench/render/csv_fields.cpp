#include "workbench/render/csv_fields.h"

#include <cmath>

#include "workbench/dataset/value_text.h"

namespace workbench {
namespace {

size_t skipDigits(std::string_view text, size_t at) {
  while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
  return at;
}

/// A decimal number with or without sign, point and exponent: what no spreadsheet takes for a
/// formula.
bool isNumber(std::string_view text) {
  const size_t start = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  size_t at = skipDigits(text, start);
  size_t digits = at - start;
  if (at < text.size() && text[at] == '.') {
    const size_t fraction = at + 1;
    at = skipDigits(text, fraction);
    digits += at - fraction;
  }
  if (digits == 0) return false;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    const size_t exponent = at;
    at = skipDigits(text, at);
    if (at == exponent) return false;
  }
  return at == text.size();
}

bool startsFormula(std::string_view text) {
  return !text.empty() && std::string_view("=+-@\t\r").find(text[0]) != std::string_view::npos &&
         !isNumber(text);
}

std::string_view csvNumber(double value, NumberBuffer& buffer) {
  if (value == kSystemMissing) return "";
  if (std::isinf(value)) return value > 0 ? "Inf" : "-Inf";
  return shortestNumber(value, buffer);
}

}  // namespace

std::string csvText(std::string_view text) {
  std::string result = startsFormula(text) ? "'" : "";
  result += text;
  const bool hasBlankEnd = !result.empty() && (result.front() == ' ' || result.back() == ' ');
  if (!hasBlankEnd && result.find_first_of(",\"\r\n") == std::string::npos) return result;
  std::string quoted = "\"";
  for (const char c : result) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string csvNumber(double value) {
  NumberBuffer buffer;
  return std::string(csvNumber(value, buffer));
}

void writeCsvNumber(double value, Writer& out) {
  NumberBuffer buffer;
  out << csvNumber(value, buffer);
}

}  // namespace workbench
