#include "workbench/dataset/value_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace workbench {
namespace {

Variable ofKind(ValueKind kind) {
  Variable variable;
  variable.name = "v";
  variable.kind = kind;
  return variable;
}

TEST(ShortestNumber, ReadsBackAsTheSameDouble) {
  EXPECT_EQ(shortestNumber(1), "1");
  EXPECT_EQ(shortestNumber(2.5), "2.5");
  EXPECT_EQ(shortestNumber(0.1), "0.1");
  EXPECT_EQ(shortestNumber(100000), "100000");
  EXPECT_EQ(shortestNumber(0.000001), "0.000001");
  EXPECT_EQ(shortestNumber(-1.25e-9), "-0.00000000125");
  EXPECT_EQ(shortestNumber(9.9e-10), "9.9e-10");
  EXPECT_EQ(shortestNumber(9007199254740992), "9007199254740992");
  EXPECT_EQ(shortestNumber(1e16), "1e+16");
  EXPECT_EQ(shortestNumber(1e300), "1e+300");
  EXPECT_EQ(shortestNumber(-0.0), "0");
  EXPECT_EQ(shortestNumber(kSystemMissing), ".");
  EXPECT_EQ(shortestNumber(std::nan("")), "NaN");
  EXPECT_EQ(shortestNumber(HUGE_VAL), "Infinity");
  EXPECT_EQ(shortestNumber(-HUGE_VAL), "-Infinity");
  for (const double value : {1.0 / 3, 5e-324, 9007199254740993.0, -1e22, 123456.789}) {
    EXPECT_EQ(std::strtod(shortestNumber(value).c_str(), nullptr), value);
  }
}

struct Shown {
  ValueKind kind;
  double value;
  const char* text;
};

/// Names a value in the list of tests.
void PrintTo(const Shown& shown, std::ostream* out) { *out << shown.text; }

class ValueAndText : public ::testing::TestWithParam<Shown> {};

TEST_P(ValueAndText, GoBothWays) {
  const Variable variable = ofKind(GetParam().kind);
  EXPECT_EQ(valueText(variable, GetParam().value), GetParam().text);
  const auto back = parseValue(variable, GetParam().text);
  ASSERT_TRUE(back.has_value());
  EXPECT_EQ(*back, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ValueAndText,
    ::testing::Values(Shown{ValueKind::kNumber, 2.5, "2.5"}, Shown{ValueKind::kBoolean, 1, "1"},
                      Shown{ValueKind::kDate, 0, "1970-01-01"},
                      Shown{ValueKind::kDate, 1769817600, "2026-01-31"},
                      Shown{ValueKind::kDate, -86400, "1969-12-31"},
                      Shown{ValueKind::kDate, 951782400, "2000-02-29"},
                      Shown{ValueKind::kDate, 253402300800, "10000-01-01"},
                      Shown{ValueKind::kDate, 3093527894400, "99999-12-31"},
                      Shown{ValueKind::kDate, 185542587014400, "5881580-07-10"},
                      Shown{ValueKind::kDate, -3217862419200, "-100000-01-01"},
                      Shown{ValueKind::kDateTime, 9223372022399, "294247-01-09 23:59:59"},
                      Shown{ValueKind::kDate, -62167219200, "0000-01-01"},
                      Shown{ValueKind::kDate, -62198755200, "-0001-01-01"},
                      Shown{ValueKind::kTime, 45000, "12:30:00"},
                      Shown{ValueKind::kTime, 45000.25, "12:30:00.25"},
                      Shown{ValueKind::kTime, 86400, "24:00:00"},
                      Shown{ValueKind::kTime, 0.000001, "00:00:00.000001"},
                      Shown{ValueKind::kDateTime, 1769862600, "2026-01-31 12:30:00"},
                      Shown{ValueKind::kDateTime, -0.5, "1969-12-31 23:59:59.5"}));

TEST(ValueText, FallsBackToNumbers) {
  EXPECT_EQ(valueText(ofKind(ValueKind::kDate), 1e18), "1e+18");
  EXPECT_EQ(valueText(ofKind(ValueKind::kTime), -1), "-1");
  EXPECT_EQ(valueText(ofKind(ValueKind::kDateTime), HUGE_VAL), "Infinity");
  EXPECT_EQ(valueText(ofKind(ValueKind::kDate), kSystemMissing), ".");
  EXPECT_EQ(valueText(ofKind(ValueKind::kDate), 3600), "1970-01-01 01:00:00");
}

TEST(ShownValue, PrefersTheLabel) {
  Variable variable = ofKind(ValueKind::kNumber);
  variable.numberLabels = {{1, "Yes"}, {0, "No"}};
  EXPECT_EQ(shownValue(variable, 1.0), "Yes");
  EXPECT_EQ(shownValue(variable, -0.0), "No");
  EXPECT_EQ(shownValue(variable, 2.0), "2");
  Variable text = ofKind(ValueKind::kString);
  text.stringLabels = {{"a", "Alpha"}};
  EXPECT_EQ(shownValue(text, "a  "), "Alpha");
  EXPECT_EQ(shownValue(text, " a"), " a");
}

TEST(ParseValue, AcceptsPlainNumbersForEveryKind) {
  for (const ValueKind kind : {ValueKind::kNumber, ValueKind::kBoolean, ValueKind::kDate,
                               ValueKind::kTime, ValueKind::kDateTime}) {
    EXPECT_EQ(parseValue(ofKind(kind), "-12.5e1"), -125.0);
    EXPECT_EQ(parseValue(ofKind(kind), "+.5"), 0.5);
  }
  EXPECT_FALSE(std::signbit(*parseValue(ofKind(ValueKind::kNumber), "-0")));
}

TEST(ParseValue, TakesABooleansLabels) {
  Variable variable = ofKind(ValueKind::kBoolean);
  variable.numberLabels = {{0, "false"}, {1, "true"}};
  EXPECT_EQ(parseValue(variable, "TRUE"), 1.0);
  EXPECT_EQ(parseValue(variable, "False"), 0.0);
  EXPECT_FALSE(parseValue(variable, "yes"));
  variable.numberLabels = {{0, "NEIN"}, {1, "STRASSE"}};
  EXPECT_EQ(parseValue(variable, "straße"), 1.0);
}

struct BadText {
  ValueKind kind;
  const char* text;
};

/// Names a text in the list of tests.
void PrintTo(const BadText& bad, std::ostream* out) { *out << '"' << bad.text << '"'; }

class NotAValue : public ::testing::TestWithParam<BadText> {};

TEST_P(NotAValue, IsRefused) { EXPECT_FALSE(parseValue(ofKind(GetParam().kind), GetParam().text)); }

INSTANTIATE_TEST_SUITE_P(
    Texts, NotAValue,
    ::testing::Values(
        BadText{ValueKind::kNumber, ""}, BadText{ValueKind::kNumber, "x"},
        BadText{ValueKind::kNumber, "1x"}, BadText{ValueKind::kNumber, "nan"},
        BadText{ValueKind::kNumber, "inf"}, BadText{ValueKind::kNumber, "1e400"},
        BadText{ValueKind::kNumber, "1e-400"}, BadText{ValueKind::kNumber, "--1"},
        BadText{ValueKind::kNumber, "+-1"}, BadText{ValueKind::kNumber, "."},
        BadText{ValueKind::kNumber, "1,5"}, BadText{ValueKind::kNumber, "0x10"},
        BadText{ValueKind::kNumber, "2026-01-31"}, BadText{ValueKind::kDate, "2026-02-30"},
        BadText{ValueKind::kDate, "2026-13-01"}, BadText{ValueKind::kDate, "26-01-01"},
        BadText{ValueKind::kDate, "2026-01-31x"}, BadText{ValueKind::kDate, "2026-01"},
        BadText{ValueKind::kTime, "25:00:00"}, BadText{ValueKind::kTime, "12:60"},
        BadText{ValueKind::kTime, "12:"}, BadText{ValueKind::kTime, "24:00:01"},
        BadText{ValueKind::kDateTime, "2026-01-31 "},
        BadText{ValueKind::kDateTime, "2026-01-31 12"}, BadText{ValueKind::kString, "1"}));

}  // namespace
}  // namespace workbench
