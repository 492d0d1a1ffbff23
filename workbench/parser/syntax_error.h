/// Reports what is wrong with a command, with its place.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/parser/command_text.h"

namespace workbench {

/// Reports an error with line, column, the line itself and a caret under the place, and the
/// suggestion when there is one.
void reportSyntaxError(const CommandTokens& command, const SyntaxProblem& problem);

/// What the catalogue's text of a problem with its place needs: line, column, the line, the caret
/// under it, what is wrong, and the suggestion.
std::vector<std::string> placedArguments(const CommandTokens& command,
                                         const SyntaxProblem& problem);

/// The key of that text.
inline constexpr const char* kPlacedProblem = "Syntax error ^1 ^2 ...";

/// A word of the user's in double quotes, fit for one line of a message: what is long is cut.
std::string shortQuoted(std::string_view text);

}  // namespace workbench
