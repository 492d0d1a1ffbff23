/// Text as a terminal shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace workbench {

/// Columns that UTF-8 text takes: 2 for wide characters, 0 for combining marks, 1 for a byte that
/// is not UTF-8.
size_t displayWidth(std::string_view text);

/// The text with control characters, line separators, and marks that reorder or hide text shown as
/// escapes (\n, \u202E), and bytes that are not UTF-8 as the replacement character: safe for a
/// terminal and for one line.
std::string printable(std::string_view text);

}  // namespace workbench
