/// Values of variables as text, and back.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// The shortest decimal text that reads back as the same double ("1", "2.5", "0.000001"), with an
/// exponent only below 1e-9 and from 1e16 on ("1e-10", "1e+300"); "." for the system-missing value,
/// "NaN", "Infinity" and "-Infinity" for those. Minus zero reads "0".
std::string shortestNumber(double value);

/// The same written into a buffer.
using NumberBuffer = std::array<char, 64>;
std::string_view shortestNumber(double value, NumberBuffer& buffer);

/// A value without its label: numbers in shortest form, dates as 2026-01-31, times as 12:30:00
/// (with fractions when there are any), date-times as 2026-01-31 12:30:00, booleans as 0 or 1; "."
/// when system-missing, ".a" to ".z" for the missing values that a variable has under these names.
std::string valueText(const Variable& variable, double value);

/// A value as a reader sees it: its label when it has one, else as valueText.
std::string shownValue(const Variable& variable, double value);
std::string shownValue(const Variable& variable, std::string_view value);

/// Reads a plain number. Nothing for any other text, for numbers beyond the range of a double, and
/// for NaN.
std::optional<double> parsePlainNumber(std::string_view text);

/// Reads a number, date, time, date-time or boolean in the variable's own form; a plain number is
/// accepted for every kind, and a boolean also by its value labels (whatever the case of the
/// letters); .a to .z for a variable that has such missing values. Nothing for any other text, for
/// numbers beyond the range of a double, and for NaN.
std::optional<double> parseValue(const Variable& variable, std::string_view text);

}  // namespace workbench
