#include "workbench/dataset/calendar.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "workbench/values/instants.h"

namespace workbench {
namespace {

constexpr int64_t kSecond = 1'000'000;  // everything below counts microseconds
constexpr int64_t kDay = 86'400 * kSecond;
constexpr double kDaySeconds = 86'400.0;
constexpr double kMostSeconds = 315'569'520'000'000.0;  // ten million years
constexpr int64_t kMostDays = 106'751'990;              // as microseconds in 64 bits
constexpr int64_t kCycle = 146'097;                     // days after which any 400 years repeat

/// A moment as the day since 1970-01-01 and the microseconds of that day.
struct Moment {
  int64_t day = 0;
  int64_t micros = 0;
};

std::optional<Moment> momentOf(double seconds) {
  if (!(std::fabs(seconds) < kMostSeconds)) return {};
  const double day = std::floor(seconds / kDaySeconds);
  Moment moment{static_cast<int64_t>(day), std::llround((seconds - day * kDaySeconds) * 1e6)};
  if (moment.micros >= kDay) {
    ++moment.day;
    moment.micros -= kDay;
  }
  return moment;
}

std::string dayText(int64_t day) {
  // Years beyond what std::chrono::year holds are found through others.
  const int64_t shift = day > 2'000'000 || day < -2'000'000 ? day / kCycle : 0;
  const std::chrono::year_month_day date{
      std::chrono::sys_days(std::chrono::days(static_cast<int>(day - shift * kCycle)))};
  const int64_t year = int{date.year()} + shift * 400;
  return fmt::format("{}{:04}-{:02}-{:02}", year < 0 ? "-" : "", year < 0 ? -year : year,
                     unsigned{date.month()}, unsigned{date.day()});
}

std::string clockText(int64_t micros) {
  const int64_t seconds = micros / kSecond;
  std::string text =
      fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
  if (micros % kSecond == 0) return text;
  text += fmt::format(".{:06}", micros % kSecond);
  return text.substr(0, text.find_last_not_of('0') + 1);
}

/// Takes 1 to `most` digits (exactly `most` when `exact`) off the front of the text.
std::optional<int64_t> takeDigits(std::string_view& text, size_t most, bool exact) {
  int64_t value = 0;
  size_t count = 0;
  while (count < most && count < text.size() && text[count] >= '0' && text[count] <= '9') {
    value = value * 10 + (text[count++] - '0');
  }
  if (count == 0 || (exact && count != most)) return {};
  text.remove_prefix(count);
  return value;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<int64_t> takeDay(std::string_view& text) {
  const bool negative = take(text, '-');
  size_t digits = 0;
  while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9') ++digits;
  if (digits < 4 || digits > 7) return {};
  const auto year = takeDigits(text, digits, true);
  if (!year || !take(text, '-')) return {};
  const auto month = takeDigits(text, 2, false);
  if (!month || !take(text, '-')) return {};
  const auto day = takeDigits(text, 2, false);
  if (!day) return {};
  const int64_t whole = negative ? -*year : *year;
  const int64_t shift = whole > 9999 || whole < -9999 ? whole / 400 : 0;
  const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(whole - shift * 400)),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return {};
  return std::chrono::sys_days(date).time_since_epoch().count() + shift * kCycle;
}

std::optional<int64_t> takeClock(std::string_view& text) {
  const auto hours = takeDigits(text, 2, false);
  if (!hours || !take(text, ':')) return {};
  const auto minutes = takeDigits(text, 2, true);
  if (!minutes) return {};
  int64_t seconds = 0;
  int64_t fraction = 0;
  if (take(text, ':')) {
    const auto given = takeDigits(text, 2, true);
    if (!given) return {};
    seconds = *given;
    if (take(text, '.')) {
      const size_t before = text.size();
      const auto digits = takeDigits(text, 6, false);
      if (!digits) return {};
      fraction = *digits;
      for (size_t i = before - text.size(); i < 6; ++i) fraction *= 10;
    }
  }
  if (*minutes > 59 || seconds > 59) return {};
  const int64_t micros = (*hours * 3600 + *minutes * 60 + seconds) * kSecond + fraction;
  if (micros > kDay) return {};
  return micros;
}

}  // namespace

std::string dateTimeText(double seconds) {
  const auto moment = momentOf(seconds);
  if (!moment) return {};
  return dayText(moment->day) + " " + clockText(moment->micros);
}

std::string dateText(double seconds) {
  const auto moment = momentOf(seconds);
  if (!moment) return {};
  return moment->micros == 0 ? dayText(moment->day) : dateTimeText(seconds);
}

std::string timeText(double seconds) {
  if (!(seconds >= 0.0 && seconds <= kDaySeconds)) return {};
  return clockText(std::llround(seconds * 1e6));
}

std::optional<double> parseDate(std::string_view text) {
  const auto day = takeDay(text);
  if (!day || !text.empty()) return {};
  return static_cast<double>(*day) * kDaySeconds;
}

std::optional<double> parseTime(std::string_view text) {
  const auto micros = takeClock(text);
  if (!micros || !text.empty()) return {};
  return secondsOf(*micros);
}

std::optional<double> parseDateTime(std::string_view text) {
  const auto zoned = parseInstant(text);
  if (zoned && zoned->kind == Instant::Kind::kZonedDateTime) return secondsOf(zoned->microseconds);
  const auto day = takeDay(text);
  if (!day) return {};
  if (text.empty()) return static_cast<double>(*day) * kDaySeconds;
  if (!take(text, ' ') && !take(text, 'T')) return {};
  const auto micros = takeClock(text);
  if (!micros || !text.empty() || std::abs(*day) > kMostDays) return {};
  return secondsOf(*day * kDay + *micros);
}

}  // namespace workbench
