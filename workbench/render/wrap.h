/// Text broken and placed in columns of a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// Columns that text takes. The same as displayWidth, quick for plain ASCII.
size_t widthOf(std::string_view text);

/// Breaks printable text into lines of at most `width` columns, at blanks where possible; a word
/// that is wider is cut. All lines but the first begin with `indent` blanks, which the width
/// includes. At least one line.
std::vector<std::string> wrapText(std::string_view text, size_t width, size_t indent = 0);

/// Columns of the widest word.
size_t widestWord(std::string_view text);

/// Columns of the widest line.
size_t widestLine(const std::vector<std::string>& lines);

enum class Align { kLeft, kRight, kCentre };

/// The text with blanks beside it, to fill `width` columns.
std::string placed(std::string_view text, size_t width, Align align);

/// The text `count` times.
std::string repeated(std::string_view text, size_t count);

}  // namespace workbench
