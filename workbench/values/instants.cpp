#include "workbench/values/instants.h"

#include <cmath>

#include <chrono>

namespace workbench {
namespace {

constexpr int64_t kSecond = 1'000'000;
constexpr int64_t kDay = 86'400 * kSecond;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

/// Takes exactly that many digits; -1 when they are not there.
int takeDigits(std::string_view& text, size_t count) {
  if (text.size() < count) return -1;
  int value = 0;
  for (size_t i = 0; i < count; ++i) {
    if (!isDigit(text[i])) return -1;
    value = value * 10 + (text[i] - '0');
  }
  text.remove_prefix(count);
  return value;
}

std::optional<int64_t> takeDate(std::string_view& text) {
  const int year = takeDigits(text, 4);
  if (year < 1 || !take(text, '-')) return {};
  const int month = takeDigits(text, 2);
  if (month < 0 || !take(text, '-')) return {};
  const int day = takeDigits(text, 2);
  if (day < 0) return {};
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return {};
  return std::chrono::sys_days(date).time_since_epoch().count() * kDay;
}

/// The digits after the point of the seconds, as microseconds.
std::optional<int64_t> takeFraction(std::string_view& text) {
  int64_t fraction = 0;
  size_t count = 0;
  for (; count < text.size() && isDigit(text[count]); ++count) {
    if (count < 6) {
      fraction = fraction * 10 + (text[count] - '0');
    } else if (text[count] != '0') {
      return {};
    }
  }
  if (count == 0) return {};
  for (size_t i = count; i < 6; ++i) fraction *= 10;
  text.remove_prefix(count);
  return fraction;
}

std::optional<int64_t> takeTime(std::string_view& text) {
  const int hours = takeDigits(text, 2);
  if (hours < 0 || hours > 23 || !take(text, ':')) return {};
  const int minutes = takeDigits(text, 2);
  if (minutes < 0 || minutes > 59) return {};
  const int64_t whole = (int64_t{hours} * 60 + minutes) * 60 * kSecond;
  if (!take(text, ':')) return whole;
  const int seconds = takeDigits(text, 2);
  if (seconds < 0 || seconds > 59) return {};
  if (!take(text, '.')) return whole + seconds * kSecond;
  const auto fraction = takeFraction(text);
  if (!fraction) return {};
  return whole + seconds * kSecond + *fraction;
}

/// What a zone is ahead of UTC.
std::optional<int64_t> takeZone(std::string_view& text) {
  if (take(text, 'Z')) return 0;
  const bool behind = !text.empty() && text.front() == '-';
  if (!take(text, '-') && !take(text, '+')) return {};
  const int hours = takeDigits(text, 2);
  if (hours < 0 || hours > 15) return {};
  int minutes = 0;
  if (!text.empty()) {
    take(text, ':');
    minutes = takeDigits(text, 2);
    if (minutes < 0 || minutes > 59) return {};
  }
  const int64_t ahead = (int64_t{hours} * 60 + minutes) * 60 * kSecond;
  return behind ? -ahead : ahead;
}

std::optional<Instant> onlyTime(std::string_view text) {
  const auto time = takeTime(text);
  if (!time || !text.empty()) return {};
  return Instant{Instant::Kind::kTime, *time};
}

}  // namespace

std::optional<Instant> parseInstant(std::string_view text) {
  if (text.size() < 5 || !isDigit(text.front())) return {};
  if (text[2] == ':') return onlyTime(text);
  const auto date = takeDate(text);
  if (!date) return {};
  if (text.empty()) return Instant{Instant::Kind::kDate, *date};
  if (!take(text, 'T') && !take(text, ' ')) return {};
  const auto time = takeTime(text);
  if (!time) return {};
  if (text.empty()) return Instant{Instant::Kind::kDateTime, *date + *time};
  const auto ahead = takeZone(text);
  if (!ahead || !text.empty()) return {};
  return Instant{Instant::Kind::kZonedDateTime, *date + *time - *ahead};
}

double secondsOf(int64_t microseconds) {
  constexpr int64_t kExact = int64_t{1} << 53U;
  if (microseconds >= -kExact && microseconds <= kExact) {
    return static_cast<double>(microseconds) / 1e6;
  }
  // More digits than a double has would be rounded twice.
  return static_cast<double>(static_cast<long double>(microseconds) / 1e6L);
}

bool secondsTell(int64_t microseconds) {
  constexpr int64_t kClose = (int64_t{1} << 33U) * kSecond;  // doubles below are closer
  if (microseconds > -kClose && microseconds < kClose) return true;
  const double seconds = secondsOf(microseconds);
  const double whole = std::floor(seconds);
  const int64_t back =
      static_cast<int64_t>(whole) * kSecond + std::llround((seconds - whole) * 1e6);
  return back == microseconds;
}

}  // namespace workbench
