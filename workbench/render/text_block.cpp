#include "workbench/render/text_block.h"

#include <algorithm>

namespace workbench {

Block blockOf(const Lines& lines, size_t width, Align align) {
  Block block{{}, width};
  for (const std::string& line : lines) block.lines.push_back(placed(line, width, align));
  return block;
}

void putBeside(Block& left, const Block& right, std::string_view gap) {
  const size_t height = std::max(left.lines.size(), right.lines.size());
  left.lines.insert(left.lines.begin(), height - left.lines.size(), std::string(left.width, ' '));
  const size_t above = height - right.lines.size();
  for (size_t i = 0; i < height; ++i) {
    left.lines[i] += gap;
    left.lines[i] += i < above ? std::string(right.width, ' ') : right.lines[i - above];
  }
  left.width += gap.size() + right.width;
}

std::string trimmedLine(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace workbench
