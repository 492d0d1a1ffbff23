#include "module/syntax/independent_subcommand.h"

#include <algorithm>
#include <cstring>

#include "module/model/success_rule.h"
#include "module/model/texts.h"
#include "module/syntax/level_values.h"
#include "module/syntax/method_lists.h"
#include "module/syntax/variable_lists.h"

namespace proportions {
namespace {

constexpr char kSelectLevel[] = "SELECT LEVEL";

/// SELECT as given; absent, or unreadable by the host, it is LEVEL without values.
struct Selection {
  SuccessRule rule = SuccessRule::kLevels;
  const ParamObj* qualifier = nullptr;

  /// LEVEL without values stands for the levels 1 and 2.
  bool byDefaultLevels() const { return qualifier == nullptr || qualifier->isLeadingToken(); }
};

bool readTestVariables(ParseContext& context, const Tokens& tokens) {
  if (tokens.empty()) {
    context.messages.GenericError(texts::kNoneBeforeBy);
    return false;
  }
  auto variables = readVariables(context, context.lists.independent, tokens);
  if (!variables) return false;
  if (removeDuplicateVariables(*variables)) {
    context.messages.GenericWarning(texts::kDuplicatesBefore, keywords::kBy,
                                    keywords::kIndependentSamples);
  }
  context.specs.setTestVarIndices(*variables);
  return true;
}

bool readGroupingVariable(ParseContext& context, const Tokens& tokens) {
  if (tokens.empty()) {
    context.messages.GenericError(texts::kNoneAfterBy);
    return false;
  }
  if (tokens.size() > 1) {
    context.messages.GenericError(texts::kOnlyOneAfterBy);
    return false;
  }
  ListValidators& lists = context.lists;
  const VarIndex index = lists.group.ValidateVariable(tokens.front());
  if (index < 0) return false;
  if (!lists.group.CheckCommonVars(lists.weight)) return false;
  if (!lists.independent.CheckCommonVars(lists.group)) return false;
  context.specs.setGroupVarIndex(index);
  return true;
}

bool readVariablesAndGrouping(ParseContext& context, SubComObj& subcommand) {
  const SplitTokens lists = splitAt(subcommand, kOperatorBy);
  if (lists.separators > 1) {
    context.messages.GenericError(texts::kOnlyOneBy);
    return false;
  }
  if (lists.separators == 0) {
    context.messages.GenericError(texts::kMissingBy);
    return false;
  }
  return readTestVariables(context, lists.before) && readGroupingVariable(context, lists.after);
}

Selection readSelection(SubComObj& subcommand) {
  std::string name;
  ParamObj* qualifier = nullptr;
  const ParamObj* select = subcommand.getParamObj(keywords::kSelect);
  if (select == nullptr || !select->getStringAndQual(name, qualifier)) return {};
  const SuccessRuleRow* rule = findRule(name);
  const bool isCut = rule != nullptr && rule->comparison == Comparison::kAtLeast;
  return {isCut ? rule->code : SuccessRule::kLevels, qualifier};
}

/// Equal in the variable's own representation. A minus zero is a zero; all else compares bit for
/// bit, since the words of a string are not numbers.
bool sameValue(const ValueBuffer& a, const ValueBuffer& b, bool isString) {
  if (!isString) return a.front() == b.front();
  return std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

/// Converts two levels and sees that they differ; `invalid` is the error of one that cannot be.
bool addLevels(ParseContext& context, const std::vector<GivenLevel>& levels, const char* invalid) {
  BinInfoElem& element = context.specs.groupInfo();
  VarSpecObj& validator = context.lists.group;
  validator.SetErrorReporting(false);
  const bool held = std::all_of(levels.begin(), levels.end(), [&](const GivenLevel& level) {
    return addLevel(context.buffers, validator, level, element);
  });
  if (!held) context.messages.GenericError(invalid);
  validator.SetErrorReporting(true);
  if (!held) return false;
  if (!sameValue(*element.rawValues[0], *element.rawValues[1], element.categorical)) return true;
  context.messages.GenericError(texts::kTwoDistinctValues, kSelectLevel,
                                keywords::kIndependentSamples);
  return false;
}

bool readLevels(ParseContext& context, const Selection& selection, const ZELK_Variable& variable) {
  if (selection.byDefaultLevels()) {
    if (variable.GetType() > 0) {
      context.messages.GenericError(texts::kStringNeedsLevels, variable.GetName().Str());
      return false;
    }
    return addLevels(context, {{"1", true, 1.0}, {"2", true, 2.0}}, texts::kInvalidSelectDefault);
  }
  std::vector<GivenLevel> levels;
  for (const TokenInfoObj& token : selection.qualifier->getTokenList()) {
    levels.push_back(levelOf(token));
  }
  if (levels.size() != 2) {
    context.messages.GenericError(texts::kTwoValues, kSelectLevel, keywords::kIndependentSamples);
    return false;
  }
  return addLevels(context, levels, texts::kInvalidSelectLevel);
}

bool readGroupRule(ParseContext& context, SubComObj& subcommand) {
  const ZELK_Variable& variable =
      context.source.GetVariable(context.specs.settings().groupVarIndex);
  const bool isString = variable.GetType() > 0;
  const Selection selection = readSelection(subcommand);

  BinInfoElem& element = context.specs.groupInfo();
  element = BinInfoElem();
  element.rule = selection.rule;
  element.categorical = element.rule == SuccessRule::kLevels && isString;
  element.obsLength = ObsLength(variable.GetType());
  element.printFormat = variable.GetFormat();

  if (element.rule == SuccessRule::kLevels) return readLevels(context, selection, variable);
  if (isString) {
    context.messages.VariableNotNumeric(variable.GetName().Str(), keywords::kBy,
                                        subcommand.getExternalName());
    return false;
  }
  if (element.rule == SuccessRule::kCutpoint && selection.qualifier != nullptr) {
    double cutPoint = kSystemMissing;
    selection.qualifier->getNumberValue(cutPoint);
    addCutPoint(context.buffers, cutPoint, selection.qualifier->getTokenList(), element);
  }
  return true;
}

}  // namespace

/// Both method lists NONE pass in silence here.
bool validateIndependentSamples(ParseContext& context, SubComObj& subcommand) {
  const bool valid =
      readVariablesAndGrouping(context, subcommand) && readGroupRule(context, subcommand);
  return readMethodLists(context, subcommand, independentMethods(), valid).valid;
}

}  // namespace proportions
