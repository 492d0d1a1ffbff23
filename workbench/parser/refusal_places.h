/// Where in the command stands what a procedure refuses.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/parser/command_facts.h"
#include "workbench/parser/command_text.h"

namespace workbench {

/// The place of the word that an error message of a procedure is about, found by the message's key
/// and arguments; for a level that was refused also the reason and the nearest valid one. Nothing
/// for messages that are about no word.
std::optional<SyntaxProblem> refusalPlace(const CommandTokens& command, const CommandFacts& facts,
                                          const std::string& key,
                                          const std::vector<std::string>& arguments);

}  // namespace workbench
