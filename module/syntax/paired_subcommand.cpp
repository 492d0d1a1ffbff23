#include "module/syntax/paired_subcommand.h"

#include <algorithm>
#include <set>
#include <utility>

#include "module/model/texts.h"
#include "module/syntax/method_lists.h"
#include "module/syntax/variable_lists.h"

namespace proportions {
namespace {

/// The last step of a reader that found something wrong.
bool refuse(ParseContext& context, const char* error) {
  context.messages.GenericError(error);
  return false;
}

bool storeSingleList(ParseContext& context, VarIndices variables) {
  if (removeDuplicateVariables(variables)) {
    context.messages.GenericWarning(texts::kDuplicateVariables, keywords::kPairedSamples);
  }
  if (variables.size() < 2) return refuse(context, texts::kNeedTwoVariables);
  context.specs.setTestVarIndices(variables);
  return true;
}

bool storeTwoLists(ParseContext& context, VarIndices first, VarIndices second) {
  if (removeDuplicateVariables(first)) {
    context.messages.GenericWarning(texts::kDuplicatesBefore, keywords::kWith,
                                    keywords::kPairedSamples);
  }
  context.specs.setTestVarIndices(first);
  if (removeDuplicateVariables(second)) {
    context.messages.GenericWarning(texts::kDuplicatesAfter, keywords::kWith,
                                    keywords::kPairedSamples);
  }
  if (first.size() < 2 && first == second) {
    return refuse(context, texts::kNeedTwoVariables);
  }
  context.specs.setSecondVarIndices(second);
  return true;
}

bool storeOrderedPairs(ParseContext& context, const VarIndices& first, const VarIndices& second) {
  if (first.size() != second.size()) context.messages.GenericWarning(texts::kUnmatchedPairs);
  VarIndices keptFirst;
  VarIndices keptSecond;
  std::set<std::pair<VarIndex, VarIndex>> met;
  bool repeated = false;
  for (size_t i = 0; i < std::min(first.size(), second.size()); ++i) {
    if (!met.emplace(first[i], second[i]).second) {
      repeated = true;
    } else if (first[i] != second[i]) {
      keptFirst.push_back(first[i]);
      keptSecond.push_back(second[i]);
    }
  }
  if (repeated) context.messages.GenericWarning(texts::kDuplicatePairs);
  if (keptFirst.empty()) return refuse(context, texts::kNeedTwoVariables);
  context.specs.setTestVarIndices(keptFirst);
  context.specs.setSecondVarIndices(keptSecond);
  return true;
}

/// True for a lone PAIRED in parentheses, the only qualifier there is.
bool isPaired(const Tokens& qualifier) {
  return qualifier.size() == 1 && qualifier.front().getUpText() == keywords::kPaired;
}

bool readSecondList(ParseContext& context, const Tokens& tokens, const VarIndices& first) {
  if (tokens.empty()) return refuse(context, texts::kNoneAfterWith);
  VarSpecObj& validator = context.lists.pairedWith;
  validator.SetAllowQualifiers(true);
  const auto second = readVariables(context, validator, tokens);
  if (!second) return false;
  const bool ordered = validator.HasQualifier();
  if (ordered && !isPaired(validator.GetQualTokenList())) {
    return refuse(context, texts::kOnlyPaired);
  }
  context.specs.setOrderedPairs(ordered);
  return ordered ? storeOrderedPairs(context, first, *second)
                 : storeTwoLists(context, first, *second);
}

bool readPairs(ParseContext& context, SubComObj& subcommand) {
  const SplitTokens lists = splitAt(subcommand, kOperatorWith);
  if (lists.separators > 1) return refuse(context, texts::kOnlyOneWith);
  if (lists.before.empty()) return refuse(context, texts::kNoneBeforeWith);
  const auto first = readVariables(context, context.lists.paired, lists.before);
  if (!first) return false;
  if (lists.separators > 0) return readSecondList(context, lists.after, *first);
  context.specs.setOrderedPairs(false);
  return storeSingleList(context, *first);
}

}  // namespace

/// Both method lists NONE pass in silence here.
bool validatePairedSamples(ParseContext& context, SubComObj& subcommand) {
  const bool valid = readPairs(context, subcommand);
  return readMethodLists(context, subcommand, pairedMethods(), valid).valid;
}

}  // namespace proportions
