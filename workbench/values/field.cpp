#include "workbench/values/field.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "workbench/values/instants.h"
#include "workbench/values/whole_numbers.h"

namespace workbench {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::string_view kBlanks = " \t";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool equalsLower(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + ('a' - 'A')) : a) == b;
  });
}

FieldValue valueOf(FieldKind kind, double number) {
  return {kind, NumberFlaw::kNone, false, number};
}

FieldValue textValue() { return valueOf(FieldKind::kText, kNoNumber); }

/// A number without its sign, taken apart.
struct NumberShape {
  bool valid = false;
  bool digitsOnly = false;
  bool hasExponent = false;
  size_t digits = 0;         ///< of the whole part and the fraction
  size_t fraction = 0;       ///< digits after the decimal sign
  uint64_t significand = 0;  ///< all its digits, as long as there are no more than 19
};

NumberShape shapeOf(std::string_view text, char decimal) {
  NumberShape shape;
  size_t at = 0;
  const auto takeDigits = [&](bool significant) {
    const size_t before = at;
    for (; at < text.size() && isDigit(text[at]); ++at) {
      if (significant)
        shape.significand = shape.significand * 10 + static_cast<uint64_t>(text[at] - '0');
    }
    return at - before;
  };
  const size_t whole = takeDigits(true);
  if (whole > 1 && text.front() == '0') return {};
  shape.digitsOnly = whole > 0 && at == text.size();
  if (at < text.size() && text[at] == decimal) {
    ++at;
    shape.fraction = takeDigits(true);
  }
  shape.digits = whole + shape.fraction;
  if (shape.digits == 0) return {};
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    shape.hasExponent = true;
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    if (takeDigits(false) == 0) return {};
  }
  shape.valid = at == text.size();
  return shape;
}

/// The nearest double, where one division of two exact ones gives it (Clinger 1990, How to read
/// floating point numbers accurately).
std::optional<double> quotient(const NumberShape& shape) {
  static constexpr std::array kPowers{1.0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                      1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
  constexpr auto kExact = static_cast<uint64_t>(kAllWhole);
  if (shape.hasExponent || shape.digits >= kPowers.size() || shape.significand > kExact) return {};
  return static_cast<double>(shape.significand) / kPowers[shape.fraction];
}

/// The nearest double to a number without sign, and whether it overflows.
double nearestDouble(std::string_view text, char decimal, bool& overflow) {
  std::string pointed;
  if (decimal != '.') {
    pointed = text;
    std::replace(pointed.begin(), pointed.end(), decimal, '.');
    text = pointed;
  }
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  overflow = false;
  if (error == std::errc::result_out_of_range) {
    // The library leaves the value alone; strtod tells the two ends of the range apart.
    const std::string copy(text);
    number = std::strtod(copy.c_str(), nullptr);
    overflow = std::isinf(number);
  }
  return number;
}

/// The digits of a whole double of 2^53 or more, exactly.
bool isExactly(double number, std::string_view digits) {
  char text[std::numeric_limits<double>::max_exponent10 + 2];
  const auto [end, error] =
      std::to_chars(text, text + sizeof text, number, std::chars_format::fixed);
  return error == std::errc() && std::string_view(text, static_cast<size_t>(end - text)) == digits;
}

FieldValue signedNumber(double number, bool negative) {
  // There is one zero only.
  return valueOf(FieldKind::kNumber, negative && number != 0.0 ? -number : number);
}

std::optional<FieldValue> specialNumber(std::string_view unsignedText, bool hasSign,
                                        bool negative) {
  if (!hasSign && equalsLower(unsignedText, "nan")) return valueOf(FieldKind::kNumber, kNoNumber);
  if (equalsLower(unsignedText, "inf") || equalsLower(unsignedText, "infinity")) {
    return signedNumber(std::numeric_limits<double>::infinity(), negative);
  }
  return {};
}

std::optional<FieldValue> numberOf(std::string_view text, char decimal) {
  const bool negative = text.front() == '-';
  const bool hasSign = negative || text.front() == '+';
  if (hasSign) text.remove_prefix(1);
  if (text.empty()) return {};
  if (!isDigit(text.front()) && text.front() != decimal) {
    return specialNumber(text, hasSign, negative);
  }
  const NumberShape shape = shapeOf(text, decimal);
  if (!shape.valid) return {};
  if (const auto number = quotient(shape)) return signedNumber(*number, negative);
  bool overflow = false;
  FieldValue value = signedNumber(nearestDouble(text, decimal, overflow), negative);
  if (shape.digitsOnly) {
    if (overflow || !isExactly(std::fabs(value.number), text)) value.flaw = NumberFlaw::kInexact;
  } else if (overflow) {
    value.flaw = NumberFlaw::kOverflow;
  }
  return value;
}

FieldKind kindOf(Instant::Kind kind) {
  switch (kind) {
    case Instant::Kind::kDate:
      return FieldKind::kDate;
    case Instant::Kind::kTime:
      return FieldKind::kTime;
    case Instant::Kind::kDateTime:
      return FieldKind::kDateTime;
    case Instant::Kind::kZonedDateTime:
      break;
  }
  return FieldKind::kZonedDateTime;
}

/// The kind that the spelling has, whatever texts stand for missing values.
FieldValue plainValue(std::string_view text, const FieldRules& rules, bool numbers) {
  if (numbers) {
    if (const auto number = numberOf(text, rules.decimal)) return *number;
    if (equalsLower(text, "true")) return valueOf(FieldKind::kBoolean, 1.0);
    if (equalsLower(text, "false")) return valueOf(FieldKind::kBoolean, 0.0);
  }
  if (const auto instant = parseInstant(text)) {
    FieldValue value = valueOf(kindOf(instant->kind), secondsOf(instant->microseconds));
    if (!secondsTell(instant->microseconds)) value.flaw = NumberFlaw::kInexact;
    return value;
  }
  return textValue();
}

/// Whether a text without trailing blanks is one of those, whose own do not count either.
bool isOneOf(std::string_view text, const std::vector<std::string>& texts) {
  return std::any_of(texts.begin(), texts.end(), [&](std::string_view candidate) {
    return candidate.starts_with(text) &&
           candidate.find_first_not_of(kBlanks, text.size()) == std::string_view::npos;
  });
}

FieldValue interpret(std::string_view text, const FieldRules& rules,
                     const std::vector<std::string>& columnMissing, bool numbers) {
  const size_t last = text.find_last_not_of(kBlanks);
  if (last == std::string_view::npos) return valueOf(FieldKind::kMissing, kNoNumber);
  const std::string_view spelt = text.substr(0, last + 1);
  const bool listed = isOneOf(spelt, rules.missingTexts);
  if (listed && rules.missingGiven) return valueOf(FieldKind::kMissing, kNoNumber);
  FieldValue value = plainValue(text, rules, numbers);
  value.provisional = listed || isOneOf(spelt, columnMissing);
  return value;
}

bool isWhole(double number) { return std::isnan(number) || std::trunc(number) == number; }

std::string_view integerProblem(const FieldValue& value) {
  if (value.kind != FieldKind::kNumber || !isWhole(value.number) || std::isinf(value.number)) {
    return "is not a whole number";
  }
  return {};
}

}  // namespace

FieldValue interpretField(std::string_view text, const FieldRules& rules,
                          const std::vector<std::string>& columnMissing) {
  return interpret(text, rules, columnMissing, true);
}

FieldValue interpretString(std::string_view text, const FieldRules& rules,
                           const std::vector<std::string>& columnMissing) {
  return interpret(text, rules, columnMissing, false);
}

FieldValue interpretNumber(std::string_view text, char decimal) {
  if (text.empty()) return textValue();
  return numberOf(text, decimal).value_or(textValue());
}

std::string_view withoutTrailingSpaces(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

FieldKind KindSet::columnKind() const {
  const auto values = static_cast<uint8_t>(kinds_ & ~1U);
  if (values == 0) return FieldKind::kNumber;
  if ((values & (values - 1U)) != 0) return FieldKind::kText;
  if (has(FieldKind::kNumber) && inexact_) return FieldKind::kText;
  for (const FieldKind kind : {FieldKind::kNumber, FieldKind::kBoolean, FieldKind::kDate,
                               FieldKind::kTime, FieldKind::kDateTime, FieldKind::kZonedDateTime}) {
    if (has(kind)) return kind;
  }
  return FieldKind::kText;
}

FieldKind KindSet::columnKind(DeclaredType type) const {
  switch (type) {
    case DeclaredType::kNone:
      break;
    case DeclaredType::kString:
      return FieldKind::kText;
    case DeclaredType::kInteger:
    case DeclaredType::kNumber:
      return FieldKind::kNumber;
    case DeclaredType::kBoolean:
      return FieldKind::kBoolean;
    case DeclaredType::kDate:
      return FieldKind::kDate;
    case DeclaredType::kTime:
      return FieldKind::kTime;
    case DeclaredType::kDateTime:
      return has(FieldKind::kZonedDateTime) && !has(FieldKind::kDateTime)
                 ? FieldKind::kZonedDateTime
                 : FieldKind::kDateTime;
  }
  return columnKind();
}

namespace {

/// A text for missing values that the column cannot hold as one of its own.
bool isOnlyMissingIn(FieldKind column, const FieldValue& value) {
  return value.provisional && (value.kind != column || value.flaw != NumberFlaw::kNone);
}

}  // namespace

bool isMissingIn(FieldKind column, const FieldValue& value) {
  if (value.kind == FieldKind::kMissing) return true;
  if (column == FieldKind::kText) return false;
  return isOnlyMissingIn(column, value) || std::isnan(value.number);
}

std::string_view contradiction(FieldKind column, DeclaredType type, const FieldValue& value) {
  if (column == FieldKind::kText || value.kind == FieldKind::kMissing) return {};
  if (isOnlyMissingIn(column, value)) return {};
  if (type == DeclaredType::kInteger) {
    if (const std::string_view problem = integerProblem(value); !problem.empty()) return problem;
  }
  if (column == FieldKind::kNumber) {
    if (value.kind != FieldKind::kNumber) return "is not a number";
    if (value.flaw == NumberFlaw::kOverflow) return "is beyond the range of numbers";
    if (value.flaw == NumberFlaw::kInexact) return "has more digits than a number can hold";
    return {};
  }
  if (value.kind == column) {
    return value.flaw == NumberFlaw::kNone
               ? std::string_view()
               : "is finer than seconds since 1970 can be held so far from it";
  }
  switch (column) {
    case FieldKind::kBoolean:
      if (value.kind == FieldKind::kNumber && (value.number == 0.0 || value.number == 1.0))
        return {};
      return "is neither true, false, 0 nor 1";
    case FieldKind::kDate:
      return "is not a date (YYYY-MM-DD)";
    case FieldKind::kTime:
      return "is not a time (HH:MM or HH:MM:SS)";
    case FieldKind::kDateTime:
      if (value.kind == FieldKind::kZonedDateTime) {
        return "has a zone, which other dates and times of the column lack";
      }
      [[fallthrough]];
    default:
      return "is not a date and time (YYYY-MM-DD HH:MM:SS)";
  }
}

std::string_view nameOf(FieldKind kind) {
  switch (kind) {
    case FieldKind::kMissing:
      return "missing value";
    case FieldKind::kNumber:
      return "number";
    case FieldKind::kBoolean:
      return "boolean";
    case FieldKind::kDate:
      return "date";
    case FieldKind::kTime:
      return "time";
    case FieldKind::kDateTime:
      return "date and time";
    case FieldKind::kZonedDateTime:
      return "date and time with zone";
    case FieldKind::kText:
      break;
  }
  return "text";
}

}  // namespace workbench
