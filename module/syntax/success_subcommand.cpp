#include "module/syntax/success_subcommand.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "module/model/designs.h"
#include "module/model/success_rule.h"
#include "module/model/texts.h"
#include "module/syntax/level_values.h"

namespace proportions {
namespace {

/// The qualifier of VALUE as given.
struct GivenRule {
  std::string qualifier;
  Tokens tokens;
  double cutPoint = kSystemMissing;  ///< missing when none was given
};

/// A list of variables as messages name it.
struct ListName {
  const char* keyword;  ///< that the list follows; empty for the first list
  const char* subcommand;
};

/// The distinct tokens in the order of their first occurrence. Numbers compare with numbers and
/// texts with texts; a number never equals a text, and a NaN no number.
Tokens distinctLevels(const Tokens& tokens) {
  std::unordered_set<double> numbers;
  std::unordered_set<std::string> words;
  Tokens kept;
  for (const TokenInfoObj& token : tokens) {
    const bool isNew = token.isNumber() ? numbers.insert(token.getNumber()).second
                                        : words.insert(token.getText()).second;
    if (isNew) kept.push_back(token);
  }
  return kept;
}

Tokens readLevels(ParseContext& context, const ParamObj& qualifier) {
  Tokens levels = distinctLevels(qualifier.getTokenList());
  if (levels.size() < qualifier.getTokenList().size()) {
    context.messages.GenericWarning(texts::kDuplicateSuccessLevels);
  }
  return levels;
}

/// Stores the rule as given in the record's success element; LAST without a readable VALUE, and for
/// a qualifier that is unknown.
GivenRule readRule(ParseContext& context, SubComObj* subcommand) {
  GivenRule given{keywords::kLast, {}};
  BinInfoElem& success = context.specs.successInfo();
  success.rule = SuccessRule::kLast;
  success.categorical = true;
  const ParamObj* value =
      subcommand == nullptr ? nullptr : subcommand->getParamObj(keywords::kValue);
  ParamObj* qualifier = nullptr;
  if (value == nullptr || !value->getStringAndQual(given.qualifier, qualifier)) return given;

  if (const SuccessRuleRow* rule = findRule(given.qualifier)) {
    success.rule = rule->code;
    success.categorical = rule->categorical;
  }
  if (qualifier == nullptr) return given;
  if (success.rule == SuccessRule::kCutpoint) {
    given.tokens = qualifier->getTokenList();
    qualifier->getNumberValue(given.cutPoint);
  } else if (success.rule == SuccessRule::kLevels) {
    given.tokens = readLevels(context, *qualifier);
  }
  return given;
}

bool addLevels(ParseContext& context, const GivenRule& given, VarSpecObj& validator,
               BinInfoElem& element) {
  const auto add = [&](const TokenInfoObj& token) {
    return addLevel(context.buffers, validator, levelOf(token), element);
  };
  if (std::all_of(given.tokens.begin(), given.tokens.end(), add)) {
    element.sortValues();
    return true;
  }
  context.messages.GenericError(texts::kInvalidSuccessLevel);
  return false;
}

bool buildElement(ParseContext& context, const GivenRule& given, const ListName& list,
                  VarIndex index, BinInfoElem& element) {
  const BinInfoElem& success = context.specs.successInfo();
  const ZELK_Variable& variable = context.source.GetVariable(index);
  const bool isString = variable.GetType() > 0;
  element.rule = success.rule;
  element.categorical = success.categorical || (success.rule == SuccessRule::kLevels && isString);
  element.obsLength = ObsLength(variable.GetType());
  element.printFormat = variable.GetFormat();
  if (!element.categorical && isString) {
    context.messages.GenericError(texts::kNumericSuccessOption, given.qualifier);
    return false;
  }
  if (element.rule == SuccessRule::kCutpoint) {
    addCutPoint(context.buffers, given.cutPoint, given.tokens, element);
  }
  if (element.rule != SuccessRule::kLevels) return true;
  VarSpecObj validator(list.keyword, list.subcommand, context.source);
  validator.SetErrorReporting(false);
  validator.SetVariable(index);
  return addLevels(context, given, validator, element);
}

/// Up to the first variable that does not accept the rule.
bool buildElements(ParseContext& context, const GivenRule& given, const ListName& list,
                   const VarIndices& variables, std::vector<BinInfoElem>& elements) {
  elements.assign(variables.size(), BinInfoElem());
  for (size_t i = 0; i < variables.size(); ++i) {
    if (!buildElement(context, given, list, variables[i], elements[i])) return false;
  }
  return true;
}

}  // namespace

bool validateSuccess(ParseContext& context, SubComObj* subcommand) {
  const GivenRule given = readRule(context, subcommand);
  PRPValidSpecs& specs = context.specs;
  const CommandSettings& settings = specs.settings();
  const DesignRow* design = findDesign(settings.modelType);
  if (design == nullptr) return true;
  bool valid = buildElements(context, given, {"", design->subcommand}, settings.testVarIndices,
                             specs.testVarInfo());
  // The second list's outcome replaces the first's on purpose: a rule that only the first list
  // refuses is reported and the command still runs.
  if (!settings.secondVarIndices.empty()) {
    valid = buildElements(context, given, {keywords::kWith, design->subcommand},
                          settings.secondVarIndices, specs.secondVarInfo());
  }
  return valid;
}

}  // namespace proportions
