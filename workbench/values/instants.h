/// Dates and times of day as texts give them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace workbench {

/// What a text says about a moment. Microseconds are whole, so that a value is the same on every
/// way that leads to it.
struct Instant {
  enum class Kind : uint8_t { kDate, kTime, kDateTime, kZonedDateTime };
  Kind kind = Kind::kDate;
  /// Since 1970-01-01 00:00:00 (UTC where there is a zone); since midnight for a time of day.
  int64_t microseconds = 0;
};

/// YYYY-MM-DD (a day of the calendar, years 0001 to 9999); HH:MM, HH:MM:SS or HH:MM:SS. and digits,
/// of which those beyond six are zeros, up to 23:59:59.999999; a date, T or one space, a time; the
/// same followed by Z, +HH, +HHMM or +HH:MM (or minus), up to 15:59. Nothing for any other text.
std::optional<Instant> parseInstant(std::string_view text);

/// Moments count in seconds: the nearest double.
double secondsOf(int64_t microseconds);

/// Whether those seconds tell the moment from the microseconds before and after it. From the year
/// 2242 on doubles may lie further apart.
bool secondsTell(int64_t microseconds);

}  // namespace workbench
