#include "workbench/parser/syntax_error.h"

#include <algorithm>

#include "workbench/output/report.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

/// At most about this many bytes of a line are shown on each side of the place.
constexpr size_t kShown = 60;
/// At most about this many bytes of a word.
constexpr size_t kShownWord = 40;

/// Moves back to the start of a UTF-8 character.
size_t characterStart(std::string_view text, size_t at) {
  // Bytes that are not UTF-8 may go on forever; a character has at most three that continue it.
  for (int steps = 0; steps < 3 && at > 0 && at < text.size(); ++steps, --at) {
    if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) break;
  }
  return at;
}

size_t characters(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

/// A part of a line as it is shown: a tab takes one column, so that the caret can be placed.
std::string shownPart(std::string_view text) {
  std::string part(text);
  std::replace(part.begin(), part.end(), '\t', ' ');
  return printable(part);
}

}  // namespace

std::string shortQuoted(std::string_view text) {
  const bool cut = text.size() > kShownWord;
  if (cut) text = text.substr(0, characterStart(text, kShownWord));
  return '"' + printable(text) + (cut ? "...\"" : "\"");
}

std::vector<std::string> placedArguments(const CommandTokens& command,
                                         const SyntaxProblem& problem) {
  const std::string& text = command.wholeText();
  const size_t place = std::min(problem.position, text.size());
  size_t lineStart = place == 0 ? 0 : text.rfind('\n', place - 1) + 1;  // npos + 1 is 0
  if (lineStart == 0) lineStart = std::min(textStart(text), place);
  size_t lineEnd = std::min(text.find('\n', place), text.size());
  if (lineEnd > lineStart && text[lineEnd - 1] == '\r' && lineEnd > place) --lineEnd;
  // Lines are counted from where the command begins: a text may hold very many commands.
  const size_t known = std::min(command.startPosition(), lineStart);
  const size_t line =
      command.startLine() +
      static_cast<size_t>(std::count(text.begin() + static_cast<ptrdiff_t>(known),
                                     text.begin() + static_cast<ptrdiff_t>(lineStart), '\n'));
  const size_t column = 1 + characters(std::string_view(text).substr(lineStart, place - lineStart));

  const size_t from = place - lineStart > kShown ? characterStart(text, place - kShown) : lineStart;
  const size_t to = lineEnd - place > kShown ? characterStart(text, place + kShown) : lineEnd;
  const std::string_view shown = text;
  const std::string before =
      (from > lineStart ? "..." : "") + shownPart(shown.substr(from, place - from));
  const std::string after =
      shownPart(shown.substr(place, to - place)) + (to < lineEnd ? "..." : "");
  return {std::to_string(line),
          std::to_string(column),
          before + after,
          std::string(displayWidth(before), ' ') + '^',
          problem.what,
          problem.suggestion.empty() ? ""
                                     : "\n    Did you mean " + printable(problem.suggestion) + "?"};
}

void reportSyntaxError(const CommandTokens& command, const SyntaxProblem& problem) {
  report(Severity::kError, kPlacedProblem, placedArguments(command, problem));
}

}  // namespace workbench
