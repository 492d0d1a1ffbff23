/// Fields against patterns: what a text is, said once more in another way.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <regex>
#include <string>

#include "workbench/values/field.h"

namespace workbench {
namespace {

struct Pattern {
  FieldKind kind;
  std::regex pattern;
};

const std::string kDate = "[0-9]{4}-(0[1-9]|1[0-2])-(0[1-9]|[12][0-9]|3[01])";
const std::string kTime = "([01][0-9]|2[0-3]):[0-5][0-9](:[0-5][0-9](\\.[0-9]{1,6}0*)?)?";
const std::string kZone = "(Z|[+-](0[0-9]|1[0-5])(:?[0-5][0-9])?)";

const std::vector<Pattern>& patterns() {
  const auto icase = std::regex::ECMAScript | std::regex::icase;
  static const std::vector<Pattern> all{
      {FieldKind::kMissing, std::regex("[ \t]*")},
      {FieldKind::kNumber,
       std::regex("[+-]?((0|[1-9][0-9]*)(\\.[0-9]*)?|\\.[0-9]+)(e[+-]?[0-9]+)?", icase)},
      {FieldKind::kNumber, std::regex("nan|[+-]?inf(inity)?", icase)},
      {FieldKind::kBoolean, std::regex("true|false", icase)},
      {FieldKind::kDate, std::regex(kDate)},
      {FieldKind::kTime, std::regex(kTime)},
      {FieldKind::kDateTime, std::regex(kDate + "[T ]" + kTime)},
      {FieldKind::kZonedDateTime, std::regex(kDate + "[T ]" + kTime + kZone)},
  };
  return all;
}

/// Whether the day is in the calendar, for a text that begins with a date.
bool isDay(const std::string& text) {
  const int year = std::stoi(text.substr(0, 4));
  const int month = std::stoi(text.substr(5, 2));
  const int day = std::stoi(text.substr(8, 2));
  const bool leap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return year > 0 && day <= kDays[month - 1] + (month == 2 && leap ? 1 : 0);
}

FieldKind kindByPattern(const std::string& text) {
  for (const auto& [kind, pattern] : patterns()) {
    if (!std::regex_match(text, pattern)) continue;
    const bool dated = kind == FieldKind::kDate || kind == FieldKind::kDateTime ||
                       kind == FieldKind::kZonedDateTime;
    return dated && !isDay(text) ? FieldKind::kText : kind;
  }
  return FieldKind::kText;
}

/// A value of some kind with a few characters changed.
std::string nearValue(std::mt19937& random) {
  static const std::vector<std::string> values{"0",
                                               "-12.50",
                                               "1e+05",
                                               ".5",
                                               "+7.",
                                               "nan",
                                               "-Infinity",
                                               "TRUE",
                                               "false",
                                               "12345678",
                                               "01234",
                                               "2024-02-29",
                                               "10:30",
                                               "23:59:59.999999",
                                               "1900-02-28",
                                               "10:30:05",
                                               "NA",
                                               "  ",
                                               "2024-12-31T10:30:00.500000",
                                               "2024-01-07 10:30Z",
                                               "1999-11-30T23:59:59.25+05:30",
                                               "2024-01-07 00:00-1559"};
  static constexpr std::string_view kCharacters = "0123456789-+.:eETZ nafi\t";
  std::string text = values[random() % values.size()];
  for (size_t changes = random() % 4; changes > 0; --changes) {
    const size_t at = random() % (text.size() + 1);
    const char c = kCharacters[random() % kCharacters.size()];
    switch (random() % 3) {
      case 0:
        text.insert(at, 1, c);
        break;
      case 1:
        if (at < text.size()) text[at] = c;
        break;
      default:
        if (at < text.size()) text.erase(at, 1);
    }
  }
  return text;
}

TEST(Fields, AreWhatTheirPatternsSay) {
  FieldRules rules;
  rules.missingTexts.clear();
  std::mt19937 random(9);
  for (int i = 0; i < 30'000; ++i) {
    const std::string text = nearValue(random);
    ASSERT_EQ(interpretField(text, rules).kind, kindByPattern(text)) << '[' << text << ']';
  }
}

TEST(Fields, AreTheNumbersThatTheLibraryReads) {
  std::mt19937_64 random(10);
  for (int i = 0; i < 200'000; ++i) {
    std::string text = std::to_string(random() >> random() % 64);
    if (random() % 2 == 0) text.insert(random() % text.size() + 1, ".");
    if (random() % 3 == 0) text += "e" + std::to_string(static_cast<int>(random() % 600) - 300);
    if (text.size() > 1 && text[0] == '0' && text[1] != '.' && text[1] != 'e') continue;
    const FieldValue value = interpretField(text, FieldRules());
    ASSERT_EQ(value.kind, FieldKind::kNumber) << text;
    ASSERT_EQ(value.number, std::strtod(text.c_str(), nullptr)) << text;
  }
}

}  // namespace
}  // namespace workbench
