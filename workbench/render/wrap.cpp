#include "workbench/render/wrap.h"

#include <algorithm>

#include "workbench/text/display_width.h"
#include "workbench/text/utf8.h"

namespace workbench {
namespace {

/// Bytes of the longest start of the text that takes at most `width` columns; at least one
/// character, and with it the combining marks that follow.
size_t startWithin(std::string_view text, size_t width) {
  size_t used = 0, end = 0;
  for (size_t at = 0; at < text.size();) {
    const size_t start = at;
    nextCharacter(text, at);
    used += widthOf(text.substr(start, at - start));
    if (used > width && end > 0) break;
    end = at;
  }
  return end;
}

/// Calls visit(word) for each run of non-blank characters.
template <typename Visit>
void forEachWord(std::string_view text, Visit visit) {
  for (size_t start = text.find_first_not_of(' '); start != std::string_view::npos;) {
    const size_t end = std::min(text.find(' ', start), text.size());
    visit(text.substr(start, end - start));
    start = text.find_first_not_of(' ', end);
  }
}

}  // namespace

size_t widthOf(std::string_view text) {
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' '; });
  return isPlain ? text.size() : displayWidth(text);
}

std::vector<std::string> wrapText(std::string_view text, size_t width, size_t indent) {
  width = std::max(width, indent + 1);
  if (widthOf(text) <= width) return {std::string(text)};
  std::vector<std::string> lines;
  std::string line;
  const auto room = [&] { return lines.empty() ? width : width - indent; };
  forEachWord(text, [&](std::string_view word) {
    const size_t have = widthOf(line);
    if (!line.empty() && have + 1 + widthOf(word) <= room()) {
      line += ' ';
      line += word;
      return;
    }
    if (!line.empty()) lines.push_back(std::move(line));
    while (widthOf(word) > room()) {
      const size_t end = startWithin(word, room());
      if (end == word.size()) break;
      lines.emplace_back(word.substr(0, end));
      word.remove_prefix(end);
    }
    line = word;
  });
  lines.push_back(std::move(line));
  for (size_t i = 1; i < lines.size(); ++i) lines[i].insert(0, indent, ' ');
  return lines;
}

size_t widestWord(std::string_view text) {
  size_t widest = 0;
  forEachWord(text, [&](std::string_view word) { widest = std::max(widest, widthOf(word)); });
  return widest;
}

size_t widestLine(const std::vector<std::string>& lines) {
  size_t widest = 0;
  for (const std::string& line : lines) widest = std::max(widest, widthOf(line));
  return widest;
}

std::string placed(std::string_view text, size_t width, Align align) {
  const size_t have = widthOf(text);
  const size_t blanks = width > have ? width - have : 0;
  const size_t left = align == Align::kLeft ? 0 : align == Align::kRight ? blanks : blanks / 2;
  std::string result(left, ' ');
  result += text;
  result.append(blanks - left, ' ');
  return result;
}

std::string repeated(std::string_view text, size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (size_t i = 0; i < count; ++i) result += text;
  return result;
}

}  // namespace workbench
