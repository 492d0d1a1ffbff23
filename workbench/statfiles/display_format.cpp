#include "workbench/statfiles/display_format.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

namespace workbench {
namespace {

constexpr double kDaySeconds = 86'400.0;
constexpr double kMicroseconds = 1e6;
/// From 1960-01-01 to 1970-01-01.
constexpr double kEpochDays = 3653.0;
/// 0001-01-01 and 9999-12-31, in days from 1970-01-01 on.
constexpr double kFirstDay = -719'162.0;
constexpr double kLastDay = 2'932'896.0;

constexpr std::string_view kNoWholeDay =
    "is not a whole number of days, though the column is shown as dates; correct it, or give the "
    "column the type number in the dictionary";
constexpr std::string_view kNoMoment =
    "lies outside the years 0001 to 9999, though the column is shown as dates; correct it, or give "
    "the column the type number in the dictionary";
constexpr std::string_view kTooFine =
    "is finer than a microsecond; round it, or give the column the type number in the dictionary";
constexpr std::string_view kNoTime =
    "is not a time of day, though the column is shown as times; correct it, or give the column the "
    "type number in the dictionary";
constexpr std::string_view kLeapSecond =
    "lies in a leap second, which dates and times have no place for here; correct it, or give the "
    "column the type number in the dictionary";

/// Formats that show a number of days as a date or a part of it.
constexpr std::string_view kDayFormats[] = {
    "B8601DA",  "DATE",     "DAY",      "DDMMYY",   "DDMMYYB",  "DDMMYYC",  "DDMMYYD",  "DDMMYYN",
    "DDMMYYP",  "DDMMYYS",  "DOWNAME",  "E8601DA",  "IS8601DA", "JULDAY",   "JULIAN",   "MINGUO",
    "MMDDYY",   "MMDDYYB",  "MMDDYYC",  "MMDDYYD",  "MMDDYYN",  "MMDDYYP",  "MMDDYYS",  "MMYY",
    "MMYYC",    "MMYYD",    "MMYYN",    "MMYYP",    "MMYYS",    "MONNAME",  "MONTH",    "MONYY",
    "NENGO",    "NLDATE",   "NLDATEL",  "NLDATEM",  "NLDATEMD", "NLDATEMN", "NLDATES",  "NLDATEW",
    "NLDATEWN", "NLDATEYM", "NLDATEYQ", "NLDATEYR", "PDJULG",   "PDJULI",   "QTR",      "QTRR",
    "WEEKDATE", "WEEKDATX", "WEEKDAY",  "WEEKU",    "WEEKV",    "WEEKW",    "WORDDATE", "WORDDATX",
    "YEAR",     "YYMM",     "YYMMC",    "YYMMD",    "YYMMDD",   "YYMMDDB",  "YYMMDDC",  "YYMMDDD",
    "YYMMDDN",  "YYMMDDP",  "YYMMDDS",  "YYMMN",    "YYMMP",    "YYMMS",    "YYMON",    "YYQ",
    "YYQC",     "YYQD",     "YYQN",     "YYQP",     "YYQR",     "YYQRC",    "YYQRD",    "YYQRN",
    "YYQRP",    "YYQRS",    "YYQS"};
/// Formats that show a number of seconds as a date and time or a part of it.
constexpr std::string_view kSecondFormats[] = {
    "B8601DN", "B8601DT",  "B8601DX",  "B8601DZ",  "B8601LX",  "DATEAMPM", "DATETIME",
    "DTDATE",  "DTMONYY",  "DTWKDATX", "DTYEAR",   "DTYYQC",   "E8601DN",  "E8601DT",
    "E8601DX", "E8601DZ",  "E8601LX",  "IS8601DN", "IS8601DT", "IS8601DZ", "MDYAMPM",
    "NLDATM",  "NLDATMAP", "NLDATMDT", "NLDATML",  "NLDATMM",  "NLDATMMD", "NLDATMMN",
    "NLDATMS", "NLDATMW",  "NLDATMWN", "NLDATMYM", "NLDATMYQ", "NLDATMYR"};
constexpr std::string_view kTimeFormats[] = {
    "B8601LZ", "B8601TM", "B8601TX", "B8601TZ", "E8601LZ",  "E8601TM",
    "E8601TX", "E8601TZ", "HHMM",    "HOUR",    "IS8601TM", "IS8601TZ",
    "MMSS",    "NLTIMAP", "NLTIME",  "TIME",    "TIMEAMPM", "TOD"};

template <typename Names>
bool contains(const Names& names, std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// "%td", "%-tcDDmonCCYY", and "%d" of files from before there were several kinds.
StatUnit unitOfPercent(std::string_view format) {
  if (format.empty() || format.front() != '%') return StatUnit::kNumber;
  format.remove_prefix(1);
  if (!format.empty() && (format.front() == '-' || format.front() == '~')) format.remove_prefix(1);
  if (!format.empty() && format.front() == 'd') return StatUnit::kDays;
  if (format.size() < 2 || format.front() != 't') return StatUnit::kNumber;
  switch (format[1]) {
    case 'd':
      return StatUnit::kDays;
    case 'c':
      return StatUnit::kMilliseconds;
    case 'C':
      return StatUnit::kMillisecondsWithLeaps;
    default:
      return StatUnit::kNumber;
  }
}

/// The days that began right after a leap second, from 1970-01-01 on.
/// Source: Bulletin C of the International Earth Rotation and Reference Systems Service.
constexpr std::array<int, 27> kDaysAfterLeap = {
    912,  1096, 1461, 1826, 2191, 2557, 2922,  3287,  3652,  4199,  4564,  4929,  5660, 6574,
    7305, 7670, 8217, 8582, 8947, 9496, 10043, 10592, 13149, 14245, 15522, 16617, 17167};

/// Takes the leap seconds off milliseconds since 1960 that count them; false inside of one.
bool withoutLeaps(double& milliseconds) {
  constexpr double kSecond = 1000.0;
  double leaps = 0.0;
  for (const int day : kDaysAfterLeap) {
    // Where the leap second begins on the scale that counts it, and those before it.
    const double begin = ((day + kEpochDays) * kDaySeconds + leaps) * kSecond;
    if (milliseconds < begin) break;
    if (milliseconds < begin + kSecond) return false;
    ++leaps;
  }
  milliseconds -= leaps * kSecond;
  return true;
}

std::optional<double> dayMoment(double days, std::string_view& reason) {
  if (std::isfinite(days) && days != std::trunc(days)) {
    reason = kNoWholeDay;
    return std::nullopt;
  }
  const double day = days - kEpochDays;
  if (!(day >= kFirstDay && day <= kLastDay)) {
    reason = kNoMoment;
    return std::nullopt;
  }
  return day * kDaySeconds;
}

/// Whole microseconds; nothing when the number is not one of them, but for the last place of what
/// arithmetic leaves.
std::optional<int64_t> microsecondsOf(double count, double perCount) {
  const double micros = std::round(count * perCount);
  const double place = std::nextafter(std::fabs(count), HUGE_VAL) - std::fabs(count);
  if (std::fabs(micros / perCount - count) > place) return std::nullopt;
  return static_cast<int64_t>(micros);
}

std::optional<double> secondMoment(double count, double perCount, std::string_view& reason) {
  const double limit = kLastDay * kDaySeconds * kMicroseconds / perCount;
  const double epoch = kEpochDays * kDaySeconds;
  if (!(std::fabs(count) < 2 * limit)) {
    reason = kNoMoment;
    return std::nullopt;
  }
  const std::optional<int64_t> since1960 = microsecondsOf(count, perCount);
  if (!since1960) {
    reason = kTooFine;
    return std::nullopt;
  }
  const int64_t micros = *since1960 - static_cast<int64_t>(epoch * kMicroseconds);
  const double seconds = static_cast<double>(micros) / kMicroseconds;
  if (!(seconds >= kFirstDay * kDaySeconds && seconds < (kLastDay + 1) * kDaySeconds)) {
    reason = kNoMoment;
    return std::nullopt;
  }
  return seconds;
}

std::optional<double> timeMoment(double count, std::string_view& reason) {
  if (!(count >= 0.0 && count < kDaySeconds)) {
    reason = kNoTime;
    return std::nullopt;
  }
  const std::optional<int64_t> micros = microsecondsOf(count, kMicroseconds);
  if (!micros) {
    reason = kTooFine;
    return std::nullopt;
  }
  return static_cast<double>(*micros) / kMicroseconds;
}

}  // namespace

std::string catalogueName(std::string_view displayFormat) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  std::string_view name = displayFormat;
  while (!name.empty() && isDigit(name.back())) name.remove_suffix(1);
  if (!name.empty() && name.back() == '.') name.remove_suffix(1);
  while (!name.empty() && isDigit(name.back())) name.remove_suffix(1);
  std::string upper(name);
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return upper;
}

StatUnit unitOf(StatFormat format, std::string_view displayFormat) {
  if (format == StatFormat::kDta) return unitOfPercent(displayFormat);
  const std::string name = catalogueName(displayFormat);
  if (contains(kDayFormats, name)) return StatUnit::kDays;
  if (contains(kSecondFormats, name)) return StatUnit::kSeconds;
  return contains(kTimeFormats, name) ? StatUnit::kSecondsOfDay : StatUnit::kNumber;
}

std::optional<double> momentOf(StatUnit unit, double count, std::string_view& reason) {
  constexpr double kMicrosPerMilli = 1e3;
  switch (unit) {
    case StatUnit::kDays:
      return dayMoment(count, reason);
    case StatUnit::kSeconds:
      return secondMoment(count, kMicroseconds, reason);
    case StatUnit::kMillisecondsWithLeaps:
      if (!withoutLeaps(count)) {
        reason = kLeapSecond;
        return std::nullopt;
      }
      return secondMoment(count, kMicrosPerMilli, reason);
    case StatUnit::kMilliseconds:
      return secondMoment(count, kMicrosPerMilli, reason);
    case StatUnit::kSecondsOfDay:
      return timeMoment(count, reason);
    case StatUnit::kNumber:
      break;
  }
  return count;
}

}  // namespace workbench
