#include <algorithm>
#include <cstring>

#include "module/output/texts.h"
#include "module/syntax/command_parser.h"
#include "module/syntax/keywords.h"

namespace proportions {
namespace {

constexpr char kSelectLevel[] = "SELECT LEVEL";

/// Equal in the variable's own representation. A minus zero is a zero; all else compares bit for
/// bit, since the words of a string are no numbers.
bool sameValue(const ValueBuffer& a, const ValueBuffer& b, bool isString) {
  if (!isString) return a.front() == b.front();
  return std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

}  // namespace

bool PRPCommandParser::validateIndependentSamples() {
  const bool valid = readGroupedVariables() && readGroupRule();
  bool tableRequested = false;  // both lists NONE pass in silence here
  return readAllMethods(*independentSamples_, independentMethods(), valid, tableRequested);
}

bool PRPCommandParser::readGroupedVariables() {
  const SplitTokens lists = splitAt(*independentSamples_, kOperatorBy);
  if (lists.separators > 1) {
    messages_.GenericError(texts::kOnlyOneBy);
    return false;
  }
  if (lists.separators == 0) {
    messages_.GenericError(texts::kMissingBy);
    return false;
  }
  return readTestVariables(lists.before) && readGroupingVariable(lists.after);
}

bool PRPCommandParser::readTestVariables(const Tokens& tokens) {
  if (tokens.empty()) {
    messages_.GenericError(texts::kNoneBeforeBy);
    return false;
  }
  if (!independentVars_.ValidateVariables(tokens, kKeepRepeats)) return false;
  if (!independentVars_.CheckCommonVars(weightVar_)) return false;
  VarIndices variables = independentVars_.GetValidVarList();
  if (removeDuplicateVariables(variables)) {
    messages_.GenericWarning(texts::kDuplicatesBefore, keywords::kBy,
                             keywords::kIndependentSamples);
  }
  specs_.setTestVarIndices(variables);
  return true;
}

bool PRPCommandParser::readGroupingVariable(const Tokens& tokens) {
  if (tokens.empty()) {
    messages_.GenericError(texts::kNoneAfterBy);
    return false;
  }
  if (tokens.size() > 1) {
    messages_.GenericError(texts::kOnlyOneAfterBy);
    return false;
  }
  const VarIndex index = groupVar_.ValidateVariable(tokens.front());
  if (index < 0) return false;
  if (!groupVar_.CheckCommonVars(weightVar_)) return false;
  if (!independentVars_.CheckCommonVars(groupVar_)) return false;
  specs_.setGroupVarIndex(index);
  return true;
}

bool PRPCommandParser::readGroupRule() {
  const ZELK_Variable& variable = source_.GetVariable(specs_.groupVarIndex());
  const bool isString = variable.GetType() > 0;
  const std::string name = variable.GetName().Str();

  std::string rule;
  ParamObj* qualifier = nullptr;
  ParamObj* select = independentSamples_->getParamObj(keywords::kSelect);
  // A SELECT that the host cannot read back says no more than one that is absent.
  const bool given = select != nullptr && select->getStringAndQual(rule, qualifier);
  const bool defaultLevels = !given || qualifier == nullptr || qualifier->isLeadingToken();

  BinInfoElem& element = specs_.groupInfo();
  element = BinInfoElem();
  element.rule = given && rule == keywords::kMidpoint   ? kMidpoint
                 : given && rule == keywords::kCutpoint ? kCutpoint
                                                        : kLevels;
  element.categorical = element.rule == kLevels && isString;
  element.obsLength = obsLength(variable.GetType());
  element.printFormat = variable.GetFormat();

  if (element.rule != kLevels) {
    if (isString) {
      messages_.VariableNotNumeric(name, keywords::kBy, independentSamples_->getExternalName());
      return false;
    }
    if (element.rule == kCutpoint && qualifier != nullptr) {
      double cutPoint = kSystemMissing;
      qualifier->getNumberValue(cutPoint);
      addCutPoint(cutPoint, qualifier->getTokenList(), element);
    }
    return true;
  }
  if (!defaultLevels) return readGroupLevels(qualifier->getTokenList());
  if (isString) {
    messages_.GenericError(texts::kStringNeedsLevels, name);
    return false;
  }
  return readDefaultLevels();
}

bool PRPCommandParser::readDefaultLevels() {
  groupVar_.SetErrorReporting(false);
  const bool held = addLevel(groupVar_, true, 1.0, "1", specs_.groupInfo()) &&
                    addLevel(groupVar_, true, 2.0, "2", specs_.groupInfo());
  if (!held) messages_.GenericError(texts::kInvalidSelectDefault);
  groupVar_.SetErrorReporting(true);
  return held && levelsDiffer();
}

bool PRPCommandParser::readGroupLevels(const Tokens& levels) {
  if (levels.size() != 2) {
    messages_.GenericError(texts::kTwoValues, kSelectLevel, keywords::kIndependentSamples);
    return false;
  }
  BinInfoElem& element = specs_.groupInfo();
  groupVar_.SetErrorReporting(false);
  const bool held = std::all_of(levels.begin(), levels.end(), [&](const TokenInfoObj& level) {
    const double number = level.isNumber() ? level.getNumber() : kSystemMissing;
    return addLevel(groupVar_, level.isNumber(), number, level.getText(), element);
  });
  if (!held) messages_.GenericError(texts::kInvalidSelectLevel);
  groupVar_.SetErrorReporting(true);
  return held && levelsDiffer();
}

bool PRPCommandParser::levelsDiffer() {
  const BinInfoElem& element = specs_.groupInfo();
  if (!sameValue(*element.rawValues[0], *element.rawValues[1], element.categorical)) return true;
  messages_.GenericError(texts::kTwoDistinctValues, kSelectLevel, keywords::kIndependentSamples);
  return false;
}

}  // namespace proportions
