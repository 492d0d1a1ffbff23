#include "module/syntax/variable_lists.h"

#include <utility>

namespace proportions {

Tokens listOf(SubComObj& subcommand) {
  const ParamObj* list = subcommand.exportParamObj();
  return list == nullptr ? Tokens() : list->getTokenList();
}

SplitTokens splitAt(SubComObj& subcommand, int operatorCode) {
  SplitTokens result;
  for (const TokenInfoObj& token : listOf(subcommand)) {
    if (token.isReservedWord() && token.getOperatorCode() == operatorCode) {
      if (++result.separators == 2) break;
    } else {
      (result.separators == 0 ? result.before : result.after).push_back(token);
    }
  }
  return result;
}

std::optional<VarIndices> readVariables(ParseContext& context, VarSpecObj& validator,
                                        const Tokens& tokens) {
  if (!validator.ValidateVariables(tokens, kKeepRepeats)) return std::nullopt;
  if (!validator.CheckCommonVars(context.lists.weight)) return std::nullopt;
  return validator.GetValidVarList();
}

bool removeDuplicateVariables(VarIndices& indices) {
  VarIndices distinct = distinctIndices(indices);
  if (distinct.size() == indices.size()) return false;
  indices = std::move(distinct);
  return true;
}

}  // namespace proportions
