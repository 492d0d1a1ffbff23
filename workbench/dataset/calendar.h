/// Dates and times as seconds, and as text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbench {

/// Seconds since 1970-01-01 as 2026-01-31; with a time of day when it is not midnight. Empty when
/// the number is further away than ten million years.
std::string dateText(double seconds);
/// Seconds since 1970-01-01 as 2026-01-31 12:30:00, fractions to the microsecond when there are
/// any. Empty as above.
std::string dateTimeText(double seconds);
/// Seconds since midnight as 12:30:00, fractions likewise. Empty when not within 0 to 24 hours.
std::string timeText(double seconds);

/// 2026-01-31. Nothing when the text is not a date.
std::optional<double> parseDate(std::string_view text);
/// 12:30 or 12:30:00 or 12:30:00.25; 24:00:00 is the end of the day.
std::optional<double> parseTime(std::string_view text);
/// A date alone (midnight), or date and time with a blank or a T between them; one with a zone
/// (parseInstant) in UTC.
std::optional<double> parseDateTime(std::string_view text);

}  // namespace workbench
