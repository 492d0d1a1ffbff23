#include "workbench/statfiles/display_format.h"

#include <gtest/gtest.h>

#include <cmath>

namespace workbench {
namespace {

double moment(StatUnit unit, double count) {
  std::string_view reason;
  const auto value = momentOf(unit, count, reason);
  EXPECT_TRUE(value) << count << " " << reason;
  return value.value_or(NAN);
}

std::string refusal(StatUnit unit, double count) {
  std::string_view reason;
  EXPECT_FALSE(momentOf(unit, count, reason)) << count;
  return std::string(reason);
}

TEST(DisplayFormat, PercentFormats) {
  for (const char* days : {"%td", "%-td", "%tdD_m_Y", "%d", "%-d", "%dD_m_Y", "%tdCCYY.NN.DD"}) {
    EXPECT_EQ(unitOf(StatFormat::kDta, days), StatUnit::kDays) << days;
  }
  EXPECT_EQ(unitOf(StatFormat::kDta, "%tc"), StatUnit::kMilliseconds);
  EXPECT_EQ(unitOf(StatFormat::kDta, "%-tcHH:MM"), StatUnit::kMilliseconds);
  EXPECT_EQ(unitOf(StatFormat::kDta, "%tC"), StatUnit::kMillisecondsWithLeaps);
  for (const char* number : {"%tw", "%tm", "%tq", "%th", "%ty", "%tb", "%tbcal:D", "%tg", "%9.0g",
                             "%12.2fc", "%8.0e", "%21x", "%16H", "", "%", "%-", "%t", "DATE9."}) {
    EXPECT_EQ(unitOf(StatFormat::kDta, number), StatUnit::kNumber) << number;
  }
}

TEST(DisplayFormat, NamedFormats) {
  for (const StatFormat format : {StatFormat::kSas7bdat, StatFormat::kXport}) {
    EXPECT_EQ(unitOf(format, "DATE9."), StatUnit::kDays);
    EXPECT_EQ(unitOf(format, "date"), StatUnit::kDays);
    EXPECT_EQ(unitOf(format, "E8601DA10."), StatUnit::kDays);
    EXPECT_EQ(unitOf(format, "DATETIME22.3"), StatUnit::kSeconds);
    EXPECT_EQ(unitOf(format, "E8601DT"), StatUnit::kSeconds);
    EXPECT_EQ(unitOf(format, "TIME8."), StatUnit::kSecondsOfDay);
    for (const char* number :
         {"BEST12.", "8.", "F8.2", "COMMA10.2", "YESNO.", "", "%td", "DATES."}) {
      EXPECT_EQ(unitOf(format, number), StatUnit::kNumber) << number;
    }
  }
}

TEST(DisplayFormat, CatalogueNames) {
  EXPECT_EQ(catalogueName("yesno5."), "YESNO");
  EXPECT_EQ(catalogueName("$Sex1."), "$SEX");
  EXPECT_EQ(catalogueName("F8.2"), "F");
  EXPECT_EQ(catalogueName("AGE3GRP."), "AGE3GRP");
  EXPECT_EQ(catalogueName("8.2"), "");
}

// 1960-01-01 is day -3653 of 1970-01-01.
TEST(DisplayFormat, Moments) {
  EXPECT_EQ(moment(StatUnit::kDays, 0), -3653.0 * 86400);
  EXPECT_EQ(moment(StatUnit::kDays, 3653), 0.0);
  EXPECT_EQ(moment(StatUnit::kDays, -715509), -719162.0 * 86400);  // 0001-01-01
  EXPECT_EQ(moment(StatUnit::kDays, 2936549), 2932896.0 * 86400);  // 9999-12-31
  EXPECT_EQ(moment(StatUnit::kSeconds, 315619200.25), 0.25);
  EXPECT_EQ(moment(StatUnit::kSeconds, 315619200.1), 0.1);
  EXPECT_EQ(moment(StatUnit::kMilliseconds, 315619200001.0), 0.001);
  EXPECT_EQ(moment(StatUnit::kMilliseconds, 315619200000.5), 0.0005);
  EXPECT_EQ(moment(StatUnit::kSecondsOfDay, 86399.999999), 86399.999999);
  EXPECT_EQ(moment(StatUnit::kNumber, 1.5), 1.5);
}

// Bulletin C: a second was added at the end of 1972-06-30, the first, and of 2016-12-31, the last
// so far.
TEST(DisplayFormat, LeapSeconds) {
  const double first = (912.0 + 3653.0) * 86400 * 1000;
  EXPECT_EQ(moment(StatUnit::kMillisecondsWithLeaps, first - 1), 912.0 * 86400 - 0.001);
  EXPECT_NE(refusal(StatUnit::kMillisecondsWithLeaps, first).find("leap second"),
            std::string::npos);
  refusal(StatUnit::kMillisecondsWithLeaps, first + 999);
  EXPECT_EQ(moment(StatUnit::kMillisecondsWithLeaps, first + 1000), 912.0 * 86400);
  const double last = ((17167.0 + 3653.0) * 86400 + 26) * 1000;
  refusal(StatUnit::kMillisecondsWithLeaps, last);
  EXPECT_EQ(moment(StatUnit::kMillisecondsWithLeaps, last + 1000), 17167.0 * 86400);
}

TEST(DisplayFormat, WhatIsNoMoment) {
  EXPECT_NE(refusal(StatUnit::kDays, 0.5).find("whole number of days"), std::string::npos);
  for (const double days : {-715510.0, 2936550.0, HUGE_VAL, -HUGE_VAL, 1e300}) {
    EXPECT_NE(refusal(StatUnit::kDays, days).find("0001 to 9999"), std::string::npos) << days;
  }
  for (const double seconds : {1e12, -1e12, HUGE_VAL, -HUGE_VAL, 1e308}) {
    EXPECT_NE(refusal(StatUnit::kSeconds, seconds).find("0001 to 9999"), std::string::npos);
  }
  EXPECT_NE(refusal(StatUnit::kSeconds, 0.0000005).find("finer"), std::string::npos);
  EXPECT_NE(refusal(StatUnit::kMilliseconds, 1.00001).find("finer"), std::string::npos);
  for (const double seconds : {-1.0, 86400.0, 1e9, HUGE_VAL}) {
    EXPECT_NE(refusal(StatUnit::kSecondsOfDay, seconds).find("time of day"), std::string::npos);
  }
  EXPECT_NE(refusal(StatUnit::kSecondsOfDay, 0.00000025).find("finer"), std::string::npos);
}

}  // namespace
}  // namespace workbench
