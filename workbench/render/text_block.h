/// Rectangles of text that are put beside each other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/render/wrap.h"

namespace workbench {

using Lines = std::vector<std::string>;

inline constexpr std::string_view kGap = "  ";  // between the columns of a table
inline constexpr std::string_view kRule = "─";
inline constexpr std::string_view kHeavyRule = "━";

/// Lines of equal width.
struct Block {
  Lines lines;
  size_t width = 0;
};

Block blockOf(const Lines& lines, size_t width, Align align);

/// Puts a block to the right of another; both stand on the same last line.
void putBeside(Block& left, const Block& right, std::string_view gap);

/// The line without blanks at its end.
std::string trimmedLine(std::string line);

}  // namespace workbench
