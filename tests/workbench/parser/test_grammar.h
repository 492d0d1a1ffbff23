/// A command's grammar for the tests, with every kind of parameter.
#pragma once

#include <string>

#include "host/parser.h"

namespace parser_tests {

/// Fills the descriptor of the command PROPORTIONS.
void describeCommand(CommandDescriptor& command);

/// The parsed command as text: a line for each subcommand, below it one for the unnamed list and
/// one for each parameter.
std::string treeText(CommandSpec& parsed);

/// One token: a word as it is, a reserved word with its code (WITH~31), a number as written with
/// its value (#1.0=1), a string in double quotes, a symbol in backquotes.
std::string tokenText(const TokenInfoObj& token);

}  // namespace parser_tests
