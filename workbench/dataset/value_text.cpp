#include "workbench/dataset/value_text.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>

#include "workbench/dataset/calendar.h"
#include "workbench/dataset/variable.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

constexpr double kSmallestPlain = 1e-9;
constexpr double kLargestPlain = 1e16;

bool isNumberKind(const Variable& variable) {
  return variable.kind == ValueKind::kNumber || variable.kind == ValueKind::kBoolean;
}

std::optional<double> parseLabel(const Variable& variable, std::string_view text) {
  const std::string wanted = foldCase(text);
  for (const auto& [value, label] : variable.numberLabels) {
    if (foldCase(label) == wanted) return value;
  }
  return {};
}

}  // namespace

std::string shortestNumber(double value) {
  NumberBuffer buffer;
  return std::string(shortestNumber(value, buffer));
}

std::string_view shortestNumber(double value, NumberBuffer& buffer) {
  if (value == kSystemMissing) return ".";
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  const double size = std::fabs(value);
  if (size == 0.0) return "0";
  char* end = buffer.data() + buffer.size();
  if (size < kSmallestPlain || size >= kLargestPlain) {
    end = fmt::format_to(buffer.data(), "{}", value);
  } else {
    end = std::to_chars(buffer.data(), end, value, std::chars_format::fixed).ptr;
  }
  return {buffer.data(), end};
}

std::string valueText(const Variable& variable, double value) {
  if (variable.extendedMissing && isExtendedMissing(value)) return extendedMissingText(value);
  if (value == kSystemMissing || isNumberKind(variable)) return shortestNumber(value);
  std::string text;
  switch (variable.kind) {
    case ValueKind::kDate:
      text = dateText(value);
      break;
    case ValueKind::kTime:
      text = timeText(value);
      break;
    case ValueKind::kDateTime:
      text = dateTimeText(value);
      break;
    default:
      break;
  }
  return text.empty() ? shortestNumber(value) : text;
}

std::string shownValue(const Variable& variable, double value) {
  const std::string* label = variable.findLabel(value);
  return label != nullptr ? *label : valueText(variable, value);
}

std::string shownValue(const Variable& variable, std::string_view value) {
  const std::string* label = variable.findLabel(value);
  return label != nullptr ? *label : std::string(value);
}

std::optional<double> parsePlainNumber(std::string_view text) {
  std::string_view digits = text;
  const bool signGiven = !digits.empty() && (digits.front() == '+' || digits.front() == '-');
  if (signGiven) digits.remove_prefix(1);
  double value = 0;
  if (digits == "Infinity") {
    value = HUGE_VAL;
  } else {
    // What does not begin like a number is left to nobody: the reader would take "nan" and "inf".
    if (digits.empty() || (digits[0] != '.' && (digits[0] < '0' || digits[0] > '9'))) return {};
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end) return {};
  }
  return normalNumber(signGiven && text.front() == '-' ? -value : value);
}

std::optional<double> parseValue(const Variable& variable, std::string_view text) {
  if (variable.isString()) return {};
  if (variable.extendedMissing) {
    if (const auto missing = parseExtendedMissing(text)) return missing;
  }
  if (const auto number = parsePlainNumber(text)) return number;
  switch (variable.kind) {
    case ValueKind::kBoolean:
      return parseLabel(variable, text);
    case ValueKind::kDate:
      return parseDate(text);
    case ValueKind::kTime:
      return parseTime(text);
    case ValueKind::kDateTime:
      return parseDateTime(text);
    default:
      return {};
  }
}

}  // namespace workbench
