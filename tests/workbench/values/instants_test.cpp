#include "workbench/values/instants.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

using Kind = Instant::Kind;

struct InstantCase {
  const char* text;
  Kind kind;
  int64_t microseconds;
};

// Days since 1970 from Python's datetime.date.toordinal.
constexpr int64_t kDay = 86'400'000'000;

TEST(Instants, AreReadToTheMicrosecond) {
  for (const auto& [text, kind, microseconds] : std::initializer_list<InstantCase>{
           {"1970-01-01", Kind::kDate, 0},
           {"2024-02-29", Kind::kDate, 19'782 * kDay},
           {"1900-02-28", Kind::kDate, -25'509 * kDay},
           {"0001-01-01", Kind::kDate, -719'162 * kDay},
           {"9999-12-31", Kind::kDate, 2'932'896 * kDay},
           {"00:00", Kind::kTime, 0},
           {"10:30", Kind::kTime, 37'800'000'000},
           {"10:30:05", Kind::kTime, 37'805'000'000},
           {"10:30:05.25", Kind::kTime, 37'805'250'000},
           {"23:59:59.999999", Kind::kTime, 86'399'999'999},
           {"00:00:00.000001000", Kind::kTime, 1},
           {"1970-01-02T00:00", Kind::kDateTime, kDay},
           {"1970-01-02 10:30:05.5", Kind::kDateTime, kDay + 37'805'500'000},
           {"1969-12-31 23:59:59.5", Kind::kDateTime, -500'000},
           {"1970-01-02T00:00Z", Kind::kZonedDateTime, kDay},
           {"1970-01-02 00:00:00+00", Kind::kZonedDateTime, kDay},
           {"1970-01-01T00:00+01:30", Kind::kZonedDateTime, -5'400'000'000},
           {"1970-01-01T00:00-0130", Kind::kZonedDateTime, 5'400'000'000},
           {"1970-01-01T00:00:00.5-15:59", Kind::kZonedDateTime, 57'540'500'000},
       }) {
    const auto read = parseInstant(text);
    ASSERT_TRUE(read.has_value()) << text;
    EXPECT_EQ(read->kind, kind) << text;
    EXPECT_EQ(read->microseconds, microseconds) << text;
  }
}

TEST(Instants, HaveNothingBeforeOrAfter) {
  for (const char* text : {"", "1970", "1970-01-01 ", " 1970-01-01", "1970-01-01T", "10:30 ",
                           "1970-01-01T00:00ZZ", "1970-01-01T00:00+15:60", "1900-02-29"}) {
    EXPECT_FALSE(parseInstant(text).has_value()) << text;
  }
}

}  // namespace
}  // namespace workbench
