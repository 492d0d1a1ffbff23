#include "workbench/odbc/server_column.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace workbench {
namespace {

ServerColumn ofKind(ServerKind kind, bool floating = false) {
  ServerColumn column;
  column.kind = kind;
  column.floating = floating;
  return column;
}

double number(const std::string& text, ServerKind kind = ServerKind::kNumber,
              bool floating = false) {
  const ServerNumber read = serverNumber(ofKind(kind, floating), text);
  EXPECT_EQ(read.flaw, "") << text;
  return read.value;
}

bool isRefused(const std::string& text, ServerKind kind = ServerKind::kNumber) {
  return !serverNumber(ofKind(kind), text).flaw.empty();
}

TEST(ServerNumber, IsExactOrRefused) {
  EXPECT_EQ(number("9007199254740992"), 9007199254740992.0);
  EXPECT_EQ(number("-1152921504606846976"), -std::ldexp(1.0, 60));
  EXPECT_TRUE(isRefused("9007199254740993"));
  EXPECT_TRUE(isRefused("-9223372036854775807"));
  EXPECT_EQ(number("0.10"), 0.1);
  EXPECT_EQ(number("-0.30"), -0.3);
  EXPECT_EQ(number("00042"), 42.0);
  EXPECT_EQ(number(".5"), 0.5);
  EXPECT_EQ(number("123456789012.3456"), 123456789012.3456);
  EXPECT_TRUE(isRefused("0.10000000000000000000000000"));
  EXPECT_TRUE(isRefused("12345678901234567.89"));
  EXPECT_TRUE(isRefused("abc"));
}

TEST(ServerNumber, OfAFloatIsTheNearestDouble) {
  EXPECT_EQ(number("0.1000000000000000055511151231257827", ServerKind::kNumber, true), 0.1);
  EXPECT_EQ(number("1e+300", ServerKind::kNumber, true), 1e300);
  EXPECT_TRUE(std::isnan(number("NaN", ServerKind::kNumber, true)));
  EXPECT_EQ(number("-Infinity", ServerKind::kNumber, true),
            -std::numeric_limits<double>::infinity());
}

TEST(ServerNumber, OfBooleansAndMoments) {
  EXPECT_EQ(number("true", ServerKind::kBoolean), 1.0);
  EXPECT_EQ(number("0", ServerKind::kBoolean), 0.0);
  EXPECT_TRUE(isRefused("2", ServerKind::kBoolean));
  EXPECT_EQ(number("1970-01-02", ServerKind::kDate), 86400.0);
  EXPECT_EQ(number("00:00:01.5", ServerKind::kTime), 1.5);
  EXPECT_EQ(number("1970-01-01 00:00:01", ServerKind::kDateTime), 1.0);
  EXPECT_EQ(number("1970-01-01 01:00:00+01", ServerKind::kZonedDateTime), 0.0);
  for (const char* text : {"infinity", "0044-03-15 BC", "0000-00-00", "10000-01-01", "24:00:00"}) {
    EXPECT_TRUE(isRefused(text, ServerKind::kDate)) << text;
  }
  EXPECT_TRUE(isRefused("24:00:00", ServerKind::kTime));
  EXPECT_TRUE(isRefused("-00:00:01", ServerKind::kTime));
}

TEST(ServerNumber, OfAnEnumerationIsThePlaceOfItsText) {
  ServerColumn column = ofKind(ServerKind::kEnumeration);
  column.categories = {"low", "high"};
  EXPECT_EQ(serverNumber(column, "high").value, 2.0);
  EXPECT_FALSE(serverNumber(column, "").flaw.empty());
}

}  // namespace
}  // namespace workbench
