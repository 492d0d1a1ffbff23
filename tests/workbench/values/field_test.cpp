#include "workbench/values/field.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace workbench {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
const FieldRules kRules;

struct NumberCase {
  const char* text;
  double value;
};

TEST(Fields, Numbers) {
  for (const auto& [text, value] : std::initializer_list<NumberCase>{
           {"0", 0.0},
           {"-0", 0.0},
           {"+7", 7.0},
           {"-12", -12.0},
           {"1.5", 1.5},
           {"5.", 5.0},
           {".5", 0.5},
           {"-.5", -0.5},
           {"0.1", 0.1},
           {"0e5", 0.0},
           {"1e5", 1e5},
           {"1E5", 1e5},
           {"1e+05", 1e5},
           {"1e-05", 1e-5},
           {"1.25e000002", 125.0},
           {"123456789012345", 123456789012345.0},
           {"9007199254740992", 9007199254740992.0},
           {"9007199254740994", 9007199254740994.0},
           {"9007199254740993.0", 9007199254740992.0},
           {"0.1000000000000000055511151231257827", 0.1},
           {"1.7976931348623157e308", std::numeric_limits<double>::max()},
           {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
           {"1e-400", 0.0},
           {"-1e-400", 0.0},
           {"inf", kInfinite},
           {"+Infinity", kInfinite},
           {"-INF", -kInfinite},
       }) {
    const FieldValue read = interpretField(text, kRules);
    EXPECT_EQ(read.kind, FieldKind::kNumber) << text;
    EXPECT_EQ(read.flaw, NumberFlaw::kNone) << text;
    EXPECT_EQ(read.number, value) << text;
    EXPECT_FALSE(read.number == 0.0 && std::signbit(read.number)) << text;
  }
}

TEST(Fields, NotANumberIsASystemMissingNumber) {
  for (const char* text : {"nan", "NaN", "NAN"}) {
    const FieldValue read = interpretField(text, kRules);
    EXPECT_EQ(read.kind, FieldKind::kNumber) << text;
    EXPECT_TRUE(std::isnan(read.number)) << text;
    EXPECT_TRUE(isMissingIn(FieldKind::kNumber, read));
    EXPECT_FALSE(isMissingIn(FieldKind::kText, read));
  }
}

TEST(Fields, WhatIsNearlyAValueIsAText) {
  for (const char* text : {"01234",
                           "00",
                           "-007",
                           "00.5",
                           "1_000",
                           "1,000",
                           "1 000",
                           "0x10",
                           "1e",
                           "1e+",
                           "e5",
                           ".",
                           "-",
                           "+",
                           "--1",
                           "+-1",
                           "1.2.3",
                           "1,5",
                           "1f",
                           "1d0",
                           "5%",
                           "$5",
                           "(5)",
                           "+nan",
                           "-nan",
                           "nan(1)",
                           "infinite",
                           "in",
                           "\xE2\x88\x92"
                           "5",
                           "5 ",
                           " 5",
                           "true ",
                           "yes",
                           "no",
                           "T",
                           "F",
                           "tru",
                           "truee",
                           "2024/01/07",
                           "2024-1-7",
                           "24-01-07",
                           "2024-02-30",
                           "2023-02-29",
                           "0000-01-01",
                           "10000-01-01",
                           "-2024-01-07",
                           "2024-13-01",
                           "2024-00-10",
                           "2024-01-00",
                           "2024-01",
                           "2024-W01-1",
                           "10:00 PM",
                           "10:00:00 PM",
                           "1:00",
                           "24:00",
                           "24:00:00",
                           "23:60",
                           "23:59:60",
                           "10:00:",
                           "10:00:00.",
                           "10:00:00.1234561",
                           "10:00:00,5",
                           "2024-01-07T",
                           "2024-01-07  10:00",
                           "2024-01-07t10:00",
                           "2024-01-07_10:00",
                           "2024-01-07 24:00:00",
                           "2024-13-45T99:99:99Z",
                           "2024-01-07T10:00z",
                           "2024-01-07T10:00 Z",
                           "2024-01-07T10:00+16",
                           "2024-01-07T10:00+15:60",
                           "2024-01-07T10:00+1",
                           "2024-01-07T10:00+1:00",
                           "2024-01-07T10:00+010",
                           "2024-01-07T10:00+01:0",
                           "2024-01-07T10:00+01:00:00",
                           "2024-01-07Z",
                           "10:00Z",
                           "31-01-24",
                           "unknown",
                           "N/A",
                           "na",
                           "NULL",
                           "\xC2\xA0"
                           "5"}) {
    const FieldValue read = interpretField(text, kRules);
    EXPECT_EQ(read.kind, FieldKind::kText) << text;
    EXPECT_FALSE(read.provisional) << text;
  }
}

TEST(Fields, Booleans) {
  for (const char* text : {"true", "True", "TRUE", "tRuE"}) {
    EXPECT_EQ(interpretField(text, kRules).kind, FieldKind::kBoolean) << text;
    EXPECT_EQ(interpretField(text, kRules).number, 1.0) << text;
  }
  for (const char* text : {"false", "False", "FALSE"}) {
    EXPECT_EQ(interpretField(text, kRules).kind, FieldKind::kBoolean) << text;
    EXPECT_EQ(interpretField(text, kRules).number, 0.0) << text;
  }
}

TEST(Fields, BlankOnesAreMissing) {
  for (const char* text : {"", " ", "\t", "  \t "}) {
    EXPECT_EQ(interpretField(text, kRules).kind, FieldKind::kMissing);
    EXPECT_TRUE(isMissingIn(FieldKind::kText, interpretField(text, kRules)));
  }
}

TEST(Fields, DefaultMissingTextsAreProvisional) {
  for (const char* text : {"NA", "NA  ", "NA\t"}) {
    const FieldValue read = interpretField(text, kRules);
    EXPECT_TRUE(read.provisional) << text;
    EXPECT_TRUE(isMissingIn(FieldKind::kNumber, read));
    EXPECT_TRUE(isMissingIn(FieldKind::kDate, read));
    EXPECT_FALSE(isMissingIn(FieldKind::kText, read));
  }
  EXPECT_FALSE(interpretField(" NA", kRules).provisional);
}

TEST(Fields, GivenMissingTextsAreMissingEverywhere) {
  FieldRules given;
  given.missingTexts = {"-9", "n/a "};
  given.missingGiven = true;
  for (const char* text : {"-9", "-9 ", "n/a"}) {
    EXPECT_EQ(interpretField(text, given).kind, FieldKind::kMissing) << text;
    EXPECT_EQ(interpretString(text, given).kind, FieldKind::kMissing) << text;
  }
  EXPECT_EQ(interpretField("NA", given).kind, FieldKind::kText);
  EXPECT_FALSE(interpretField("NA", given).provisional);
  EXPECT_EQ(interpretField("-9.0", given).number, -9.0);
}

TEST(Fields, ADictionarysMissingTextIsAValueWhereTheColumnHoldsIt) {
  const FieldValue code = interpretField("-9", kRules, {"-9", "refused"});
  EXPECT_TRUE(code.provisional);
  EXPECT_FALSE(isMissingIn(FieldKind::kNumber, code));
  EXPECT_TRUE(isMissingIn(FieldKind::kDate, code));
  EXPECT_FALSE(isMissingIn(FieldKind::kText, code));
  EXPECT_TRUE(
      isMissingIn(FieldKind::kNumber, interpretField("refused", kRules, {"-9", "refused"})));
}

TEST(Fields, DecimalComma) {
  FieldRules comma;
  comma.decimal = ',';
  EXPECT_EQ(interpretField("1,5", comma).number, 1.5);
  EXPECT_EQ(interpretField("-,5e1", comma).number, -5.0);
  EXPECT_EQ(interpretField("1.5", comma).kind, FieldKind::kText);
  EXPECT_EQ(interpretField("1234567890123456,5", comma).number, 1234567890123456.5);
  EXPECT_EQ(interpretField("10:00:00.5", comma).kind, FieldKind::kTime);
}

TEST(Fields, WholeNumbersBeyondADoubleAreMarked) {
  for (const char* text : {"9007199254740993", "-9007199254740993", "+12345678901234567890",
                           "100000000000000000000000000000000000000000"}) {
    EXPECT_EQ(interpretField(text, kRules).flaw, NumberFlaw::kInexact) << text;
  }
  EXPECT_EQ(interpretField(std::string(400, '9'), kRules).flaw, NumberFlaw::kInexact);
  for (const char* text : {"1e309", "-1e999", "1e400000000000000000000"}) {
    EXPECT_EQ(interpretField(text, kRules).kind, FieldKind::kNumber) << text;
    EXPECT_EQ(interpretField(text, kRules).flaw, NumberFlaw::kOverflow) << text;
  }
  EXPECT_EQ(interpretField(std::string(400, '9') + ".5", kRules).flaw, NumberFlaw::kOverflow);
  EXPECT_EQ(interpretField("0." + std::string(400, '0') + "1", kRules).flaw, NumberFlaw::kNone);
}

TEST(Fields, MomentsThatSecondsCannotTellApartAreMarked) {
  const auto flaw = [](const char* text) { return interpretField(text, FieldRules()).flaw; };
  EXPECT_EQ(flaw("2240-12-31 23:59:59.999999"), NumberFlaw::kNone);
  EXPECT_EQ(flaw("9999-12-31 23:59:59.5"), NumberFlaw::kNone);
  EXPECT_EQ(flaw("9999-12-31 23:59:59"), NumberFlaw::kNone);
  EXPECT_EQ(flaw("9999-12-31 23:59:59.999999"), NumberFlaw::kInexact);
  EXPECT_EQ(flaw("9999-12-31T23:59:59.999999Z"), NumberFlaw::kInexact);
  EXPECT_EQ(flaw("0001-01-01 00:00:00.000001"), NumberFlaw::kInexact);
  const FieldValue fine = interpretField("9999-12-31 23:59:59.999999", FieldRules());
  EXPECT_NE(contradiction(FieldKind::kDateTime, DeclaredType::kNone, fine), "");
  EXPECT_EQ(contradiction(FieldKind::kText, DeclaredType::kString, fine), "");
}

TEST(Fields, StringsOfTypedFormatsAreNeitherNumbersNorBooleans) {
  for (const char* text : {"5", "1.5", "nan", "inf", "true", "31-01-24"}) {
    EXPECT_EQ(interpretString(text, kRules).kind, FieldKind::kText) << text;
  }
  EXPECT_EQ(interpretString("2024-01-07", kRules).kind, FieldKind::kDate);
  EXPECT_EQ(interpretString(" ", kRules).kind, FieldKind::kMissing);
  EXPECT_TRUE(interpretString("NA", kRules).provisional);
}

TEST(Fields, NumbersAlone) {
  EXPECT_EQ(interpretNumber("-1.5e2", '.').number, -150.0);
  EXPECT_EQ(interpretNumber("9007199254740993", '.').flaw, NumberFlaw::kInexact);
  EXPECT_EQ(interpretNumber("1e999", '.').flaw, NumberFlaw::kOverflow);
  EXPECT_EQ(interpretNumber("", '.').kind, FieldKind::kText);
  EXPECT_EQ(interpretNumber("true", '.').kind, FieldKind::kText);
}

TEST(Fields, TrailingSpacesNeverCountInTexts) {
  EXPECT_EQ(withoutTrailingSpaces(" a  "), " a");
  EXPECT_EQ(withoutTrailingSpaces("a\t "), "a\t");
  EXPECT_EQ(withoutTrailingSpaces("   "), "");
}

}  // namespace
}  // namespace workbench
