/// Variable lists of a subcommand.
#pragma once

#include <optional>

#include "module/syntax/parse_context.h"

namespace proportions {

/// The tokens of a subcommand's unnamed list; none when it was not written.
Tokens listOf(SubComObj& subcommand);

/// An unnamed list split at a reserved word, up to its second occurrence.
struct SplitTokens {
  Tokens before;
  Tokens after;
  int separators = 0;
};
SplitTokens splitAt(SubComObj& subcommand, int operatorCode);

/// The variables of a list of which none may be the weight, repeats included; nothing, with a
/// message, when the host refuses it.
std::optional<VarIndices> readVariables(ParseContext& context, VarSpecObj& validator,
                                        const Tokens& tokens);

/// Keeps first occurrences in their order and tells whether there was a repeat.
bool removeDuplicateVariables(VarIndices& indices);

}  // namespace proportions
