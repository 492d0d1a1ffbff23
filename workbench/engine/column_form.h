/// What the values of a column are, before a dictionary has its say.
#pragma once

#include <cstdint>
#include <string_view>

namespace workbench {

enum class ColumnForm : uint8_t {
  kNumber,
  kBoolean,
  kDate,
  kTime,
  kDateTime,
  kString,
  kUnusable  ///< lists, structures, bytes
};

/// Whether a text is a value of the form, as the engine would read it. Numbers may have blanks
/// around them.
bool isNumberText(std::string_view text);
bool isWholeText(std::string_view text);  ///< a number without point or exponent, up to 15 digits
bool isBooleanText(std::string_view text);
bool isDateText(std::string_view text);
bool isTimeText(std::string_view text);
/// `zoned` comes back true when there is an offset.
bool isDateTimeText(std::string_view text, bool& zoned);

/// Without blanks at either end.
std::string_view stripped(std::string_view text);

/// Position of the first byte that is not UTF-8, or npos.
size_t firstInvalidUtf8(std::string_view text);

}  // namespace workbench
