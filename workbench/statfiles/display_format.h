/// What the numbers of a column count, by the format in which the column is shown.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/statfiles/library_reader.h"

namespace workbench {

/// Moments are counted from 1960-01-01 00:00:00 on.
enum class StatUnit : uint8_t {
  kNumber,  ///< nothing but itself; also weeks, months, quarters, half-years and years
  kDays,
  kSeconds,
  kMilliseconds,
  kMillisecondsWithLeaps,  ///< with the leap seconds of UTC
  kSecondsOfDay
};

/// By the display format as the file has it: "%td", "%-tcHH:MM", "DATE9.", "TIME8".
StatUnit unitOf(StatFormat format, std::string_view displayFormat);

/// The name under which a catalogue has the value labels of a display format: without the width and
/// the decimals ("YESNO" for "yesno5.").
std::string catalogueName(std::string_view displayFormat);

/// A count as the workbench holds it: dates and date-times in seconds since 1970-01-01, times in
/// seconds since midnight. Nothing when it is none; `reason` then ends a sentence that begins with
/// the number.
std::optional<double> momentOf(StatUnit unit, double count, std::string_view& reason);

}  // namespace workbench
