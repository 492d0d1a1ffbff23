/// Variables that a command names.
#pragma once

#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/parser/command_text.h"

namespace workbench {

/// What ALL stands for: every variable but the weight, the split variables and kSampleVariable,
/// which the host makes, in file order.
std::vector<VarIndex> allVariables(const ActiveDataset& dataset);

/// The variables that the tokens of a list name (names, `first TO last`, ALL), in their order
/// there, each once. What names none is passed over.
std::vector<VarIndex> namedVariables(const std::vector<TokenInfoObj>& tokens,
                                     const ActiveDataset& dataset);

/// The variables that the command's variable lists name, in file order, without repeats. Errors are
/// passed over: never too few for a command that is valid.
std::vector<VarIndex> mentionedVariables(const CommandTokens& command,
                                         const ActiveDataset& dataset);

}  // namespace workbench
