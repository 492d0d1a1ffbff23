#include <algorithm>
#include <set>
#include <utility>

#include "module/output/texts.h"
#include "module/syntax/command_parser.h"
#include "module/syntax/keywords.h"

namespace proportions {

bool PRPCommandParser::validatePairedSamples() {
  const bool valid = readPairs();
  bool tableRequested = false;  // both lists NONE pass in silence here
  return readAllMethods(*pairedSamples_, pairedMethods(), valid, tableRequested);
}

bool PRPCommandParser::readPairs() {
  const SplitTokens lists = splitAt(*pairedSamples_, kOperatorWith);
  if (lists.separators > 1) {
    messages_.GenericError(texts::kOnlyOneWith);
    return false;
  }
  if (lists.before.empty()) {
    messages_.GenericError(texts::kNoneBeforeWith);
    return false;
  }
  if (!pairedVars_.ValidateVariables(lists.before, kKeepRepeats)) return false;
  if (!pairedVars_.CheckCommonVars(weightVar_)) return false;
  const VarIndices first = pairedVars_.GetValidVarList();
  if (lists.separators == 0) {
    specs_.setOrderedPairs(false);
    return storeSingleList(first);
  }
  if (lists.after.empty()) {
    messages_.GenericError(texts::kNoneAfterWith);
    return false;
  }
  pairedWithVars_.SetAllowQualifiers(true);
  if (!pairedWithVars_.ValidateVariables(lists.after, kKeepRepeats)) return false;
  if (!pairedWithVars_.CheckCommonVars(weightVar_)) return false;
  const VarIndices second = pairedWithVars_.GetValidVarList();
  bool ordered = false;
  if (!readPairQualifier(ordered)) return false;
  specs_.setOrderedPairs(ordered);
  return ordered ? storeOrderedPairs(first, second) : storeTwoLists(first, second);
}

bool PRPCommandParser::readPairQualifier(bool& ordered) {
  if (!pairedWithVars_.HasQualifier()) return true;
  const Tokens& qualifier = pairedWithVars_.GetQualTokenList();
  if (qualifier.size() != 1 || qualifier.front().getUpText() != keywords::kPaired) {
    messages_.GenericError(texts::kOnlyPaired);
    return false;
  }
  ordered = true;
  return true;
}

bool PRPCommandParser::storeSingleList(VarIndices first) {
  if (removeDuplicateVariables(first)) {
    messages_.GenericWarning(texts::kDuplicateVariables, keywords::kPairedSamples);
  }
  if (first.size() < 2) {
    messages_.GenericError(texts::kNeedTwoVariables);
    return false;
  }
  specs_.setTestVarIndices(first);
  return true;
}

bool PRPCommandParser::storeTwoLists(VarIndices first, VarIndices second) {
  if (removeDuplicateVariables(first)) {
    messages_.GenericWarning(texts::kDuplicatesBefore, keywords::kWith, keywords::kPairedSamples);
  }
  specs_.setTestVarIndices(first);
  if (removeDuplicateVariables(second)) {
    messages_.GenericWarning(texts::kDuplicatesAfter, keywords::kWith, keywords::kPairedSamples);
  }
  if (first.size() < 2 && second.size() < 2 && first == second) {
    messages_.GenericError(texts::kNeedTwoVariables);
    return false;
  }
  specs_.setSecondVarIndices(second);
  return true;
}

bool PRPCommandParser::storeOrderedPairs(const VarIndices& first, const VarIndices& second) {
  if (first.size() != second.size()) messages_.GenericWarning(texts::kUnmatchedPairs);
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
  if (repeated) messages_.GenericWarning(texts::kDuplicatePairs);
  if (keptFirst.empty()) {
    messages_.GenericError(texts::kNeedTwoVariables);
    return false;
  }
  specs_.setTestVarIndices(keptFirst);
  specs_.setSecondVarIndices(keptSecond);
  return true;
}

}  // namespace proportions
