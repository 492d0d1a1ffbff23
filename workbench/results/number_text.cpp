#include "workbench/results/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "workbench/dataset/value_text.h"

namespace workbench {
namespace {

constexpr double kLargestWhole = 1e17;  // longer counts are unreadable, and no longer exact

/// As many digits as every double has for certain: what lies beyond is noise of the computation.
constexpr int kReliableDigits = 15;

std::string printed(std::chars_format form, int digits, double value) {
  std::array<char, 64> buffer{};
  char* const end = buffer.data() + buffer.size();
  return {buffer.data(), std::to_chars(buffer.data(), end, value, form, digits).ptr};
}

/// A positive number as 0.DDDDD... times a power of ten.
struct Decimal {
  std::string digits;
  int point;  ///< digits before the decimal point; may be negative
};

Decimal decimalOf(double size) {
  const std::string text = printed(std::chars_format::scientific, kReliableDigits - 1, size);
  const size_t exponent = text.find('e');
  return {text.substr(0, 1) + text.substr(2, exponent - 2),
          std::atoi(text.c_str() + exponent + 1) + 1};
}

/// Keeps the first `count` digits, halves rounded up; may grow by a digit at the front.
void roundTo(int count, Decimal& number) {
  if (count >= static_cast<int>(number.digits.size())) {
    number.digits.append(static_cast<size_t>(count) - number.digits.size(), '0');
    return;
  }
  const bool roundsUp = count >= 0 && number.digits[static_cast<size_t>(count)] >= '5';
  number.digits.resize(static_cast<size_t>(std::max(count, 0)));
  if (!roundsUp) return;
  size_t at = number.digits.size();
  while (at > 0 && number.digits[at - 1] == '9') number.digits[--at] = '0';
  if (at > 0) {
    ++number.digits[at - 1];
  } else {
    number.digits.insert(0, 1, '1');
    ++number.point;
  }
}

}  // namespace

bool isPlainNumber(double value) { return value != kSystemMissing && std::isfinite(value); }

std::string fixedText(double value, int decimals, int shift) {
  Decimal number = value == 0.0 ? Decimal{"0", 1 - shift} : decimalOf(std::fabs(value));
  number.point += shift;
  roundTo(number.point + decimals, number);
  if (number.point < 1) {  // zeros between the point and the first digit
    number.digits.insert(0, static_cast<size_t>(1 - number.point), '0');
    number.point = 1;
  }
  number.digits.resize(static_cast<size_t>(number.point) + static_cast<size_t>(decimals), '0');
  const bool isZero = number.digits.find_first_not_of('0') == std::string::npos;
  std::string text = value < 0.0 && !isZero ? "-" : "";
  text += number.digits.substr(0, static_cast<size_t>(number.point));
  if (decimals > 0) text += '.' + number.digits.substr(static_cast<size_t>(number.point));
  return text;
}

std::string exponentText(double value, int decimals) {
  return printed(std::chars_format::scientific, decimals, value);
}

std::string countText(double value) {
  if (!isPlainNumber(value) || std::fabs(value) >= kLargestWhole || value != std::floor(value)) {
    return shortestNumber(value);
  }
  return printed(std::chars_format::fixed, 0, value == 0.0 ? 0.0 : value);
}

std::string probabilityText(double value, int decimals) {
  if (!isPlainNumber(value)) return shortestNumber(value);
  decimals = std::max(decimals, 3);
  const std::string least = "0." + std::string(static_cast<size_t>(decimals) - 1, '0') + '1';
  return value >= 0.0 && value < std::strtod(least.c_str(), nullptr) ? '<' + least
                                                                     : fixedText(value, decimals);
}

int decimalsFor(double value, int fewest, int most) {
  const double size = std::fabs(value);
  if (size == 0.0) return fewest;
  return std::clamp(1 - static_cast<int>(std::floor(std::log10(size))), fewest, most);
}

}  // namespace workbench
