/// Fields of comma-separated values.
#pragma once

#include <string>
#include <string_view>

#include "workbench/render/writer.h"

namespace workbench {

/// A text as a field: in quotes where it needs them, and with an apostrophe before what a
/// spreadsheet would run as a formula. That is a text that begins with =, +, -, @, a tab or a
/// carriage return and is not a number.
std::string csvText(std::string_view text);

/// A number that reads back as the same double; "NaN", "Inf" and "-Inf" as such, nothing for the
/// missing value.
std::string csvNumber(double value);
void writeCsvNumber(double value, Writer& out);

}  // namespace workbench
