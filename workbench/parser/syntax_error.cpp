#include "workbench/parser/syntax_error.h"

#include <algorithm>

#include "workbench/output/report.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

/// At most about this many characters of a line are shown on each side of the place.
constexpr size_t kShown = 100;

/// Moves to the start of a UTF-8 character.
size_t characterStart(const std::string& text, size_t at) {
  while (at > 0 && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) --at;
  return at;
}

size_t characters(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

}  // namespace

std::string didYouMean(const std::string& suggestion) {
  return suggestion.empty() ? "" : " Did you mean " + suggestion + "?";
}

void reportSyntaxError(const CommandTokens& command, const SyntaxProblem& problem) {
  const std::string& text = command.wholeText();
  const size_t place = std::min(problem.position, text.size());
  const size_t lineStart = place == 0 ? 0 : text.rfind('\n', place - 1) + 1;  // npos + 1 is 0
  size_t lineEnd = std::min(text.find('\n', place), text.size());
  if (lineEnd > lineStart && text[lineEnd - 1] == '\r' && lineEnd > place) --lineEnd;
  const size_t line =
      1 + static_cast<size_t>(
              std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(lineStart), '\n'));
  const size_t column = 1 + characters(std::string_view(text).substr(lineStart, place - lineStart));

  const size_t from = place - lineStart > kShown ? characterStart(text, place - kShown) : lineStart;
  const size_t to = lineEnd - place > kShown ? characterStart(text, place + kShown) : lineEnd;
  const std::string before =
      (from > lineStart ? "..." : "") + printable(text.substr(from, place - from));
  const std::string after = printable(text.substr(place, to - place)) + (to < lineEnd ? "..." : "");
  report(Severity::kError, "Syntax error ^1 ^2 ...",
         {std::to_string(line), std::to_string(column), before + after,
          std::string(displayWidth(before), ' ') + '^', problem.what,
          problem.suggestion.empty() ? "" : "\n   " + didYouMean(problem.suggestion)});
}

}  // namespace workbench
