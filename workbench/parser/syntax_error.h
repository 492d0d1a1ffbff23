/// Reports what is wrong with a command, with its place.
#pragma once

#include <string>

#include "workbench/parser/command_text.h"

namespace workbench {

/// Reports an error with line, column, the line itself and a caret under the place, and the
/// suggestion when there is one.
void reportSyntaxError(const CommandTokens& command, const SyntaxProblem& problem);

/// " Did you mean X?" for a non-empty word.
std::string didYouMean(const std::string& suggestion);

}  // namespace workbench
