#include "workbench/engine/column_form.h"

#include <gtest/gtest.h>

#include <string>

namespace workbench {
namespace {

TEST(ColumnForm, Numbers) {
  for (const char* text : {"1", "-1", "+1", "001", "1.", ".5", "1e3", "1E-3", " 1 ", "-.5e+10",
                           "nan", "NaN", "inf", "-Infinity"}) {
    EXPECT_TRUE(isNumberText(text)) << text;
  }
  for (const char* text : {"", " ", ".", "-", "1e", "1,5", "1 000", "0x1", "1_0", "abc", "infinit",
                           "1.2.3", "1-2", "e3"}) {
    EXPECT_FALSE(isNumberText(text)) << text;
  }
}

TEST(ColumnForm, WholeNumbers) {
  for (const char* text : {"1", "-12", " 7", "999999999999999"}) EXPECT_TRUE(isWholeText(text));
  for (const char* text : {"1.0", "1e3", "", "nan", "9999999999999999"}) {
    EXPECT_FALSE(isWholeText(text)) << text;
  }
}

TEST(ColumnForm, DatesAndTimes) {
  bool zoned = false;
  for (const char* text : {"2026-01-31", "2024-02-29", "0001-12-31"}) {
    EXPECT_TRUE(isDateText(text)) << text;
    EXPECT_TRUE(isDateTimeText(text, zoned)) << text;
  }
  for (const char* text : {"2026-02-29", "1900-02-29", "2026-04-31", "2026-13-01", "2026-1-1",
                           "31/01/2026", "2026-01-31x", "20260131"}) {
    EXPECT_FALSE(isDateText(text)) << text;
  }
  for (const char* text : {"12:30", "12:30:59", "00:00:00.123456"}) EXPECT_TRUE(isTimeText(text));
  for (const char* text : {"24:00", "12:60", "12", "1:30", "12:30:59.", "12:30:59.1234567"}) {
    EXPECT_FALSE(isTimeText(text)) << text;
  }
  EXPECT_TRUE(isDateTimeText("2026-01-31T12:30", zoned));
  EXPECT_FALSE(zoned);
  for (const char* text : {"2026-01-31 12:30:00Z", "2026-01-31 12:30:00+02",
                           "2026-01-31T12:30:00.5-03:30", "2026-01-31 12:30+0200"}) {
    zoned = false;
    EXPECT_TRUE(isDateTimeText(text, zoned)) << text;
    EXPECT_TRUE(zoned) << text;
  }
  EXPECT_FALSE(isDateTimeText("2026-01-31 12:30 CET", zoned));
}

TEST(ColumnForm, Utf8) {
  EXPECT_EQ(firstInvalidUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::string::npos);
  EXPECT_EQ(firstInvalidUtf8("ab\xE9"), 2U);
  EXPECT_EQ(firstInvalidUtf8("\xC0\x80"), 0U) << "overlong";
  EXPECT_EQ(firstInvalidUtf8("\xED\xA0\x80"), 0U) << "surrogate";
  EXPECT_EQ(firstInvalidUtf8("\xF4\x90\x80\x80"), 0U) << "beyond Unicode";
  EXPECT_EQ(firstInvalidUtf8("\x80"), 0U);
}

}  // namespace
}  // namespace workbench
