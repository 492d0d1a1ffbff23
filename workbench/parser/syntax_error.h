/// Reports what is wrong with a command, with its place.
#pragma once

#include <string>
#include <string_view>

#include "workbench/parser/command_text.h"

namespace workbench {

/// Reports an error with line, column, the line itself and a caret under the place, and the
/// suggestion when there is one.
void reportSyntaxError(const CommandTokens& command, const SyntaxProblem& problem);

/// A word of the user's in double quotes, fit for one line of a message: what is long is cut.
std::string shortQuoted(std::string_view text);

}  // namespace workbench
