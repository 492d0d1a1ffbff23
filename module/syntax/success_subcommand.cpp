#include <algorithm>

#include "module/output/texts.h"
#include "module/syntax/command_parser.h"
#include "module/syntax/keywords.h"

namespace proportions {
namespace {

struct RuleKeyword {
  const char* keyword;
  Rule rule;
  bool categorical;
};

/// LEVEL becomes categorical per variable, for strings.
constexpr RuleKeyword kSuccessRules[] = {{keywords::kLast, kLast, true},
                                         {keywords::kFirst, kFirst, true},
                                         {keywords::kMidpoint, kMidpoint, false},
                                         {keywords::kCutpoint, kCutpoint, false},
                                         {keywords::kLevel, kLevels, false}};

/// Numbers compare with numbers and texts with texts; a number never equals a text.
bool sameLevel(const TokenInfoObj& a, const TokenInfoObj& b) {
  if (a.isNumber() != b.isNumber()) return false;
  return a.isNumber() ? a.getNumber() == b.getNumber() : a.getText() == b.getText();
}

/// The distinct tokens in the order of their first occurrence.
Tokens distinctLevels(const Tokens& tokens) {
  Tokens kept;
  for (const TokenInfoObj& token : tokens) {
    const auto same = [&token](const TokenInfoObj& earlier) { return sameLevel(earlier, token); };
    if (std::none_of(kept.begin(), kept.end(), same)) kept.push_back(token);
  }
  return kept;
}

}  // namespace

bool PRPCommandParser::validateSuccess() {
  const SuccessRule rule = readSuccessRule();
  switch (specs_.modelType()) {
    case kOneSample:
      return buildSuccessElements(rule, "", keywords::kOneSample, specs_.testVarIndices(),
                                  specs_.testVarInfo());
    case kIndependentSamples:
      return buildSuccessElements(rule, "", keywords::kIndependentSamples, specs_.testVarIndices(),
                                  specs_.testVarInfo());
    case kPairedSamples: {
      bool valid = buildSuccessElements(rule, "", keywords::kPairedSamples, specs_.testVarIndices(),
                                        specs_.testVarInfo());
      // The second list's outcome replaces the first's on purpose: a rule that only the first list
      // refuses is reported and the command still runs.
      if (!specs_.secondVarIndices().empty()) {
        valid = buildSuccessElements(rule, keywords::kWith, keywords::kPairedSamples,
                                     specs_.secondVarIndices(), specs_.secondVarInfo());
      }
      return valid;
    }
    default:
      return true;
  }
}

PRPCommandParser::SuccessRule PRPCommandParser::readSuccessRule() {
  SuccessRule result{keywords::kLast, {}, kSystemMissing};
  BinInfoElem& success = specs_.successInfo();
  success.rule = kLast;
  success.categorical = true;
  ParamObj* value = success_ == nullptr ? nullptr : success_->getParamObj(keywords::kValue);
  ParamObj* qualifier = nullptr;
  if (value == nullptr || !value->getStringAndQual(result.qualifier, qualifier)) return result;

  for (const RuleKeyword& known : kSuccessRules) {
    if (result.qualifier != known.keyword) continue;
    success.rule = known.rule;
    success.categorical = known.categorical;
  }
  if (qualifier == nullptr) return result;
  if (success.rule == kCutpoint) {
    result.tokens = qualifier->getTokenList();
    qualifier->getNumberValue(result.cutPoint);
  } else if (success.rule == kLevels) {
    result.tokens = distinctLevels(qualifier->getTokenList());
    if (result.tokens.size() < qualifier->getTokenList().size()) {
      messages_.GenericWarning(texts::kDuplicateSuccessLevels);
    }
  }
  return result;
}

bool PRPCommandParser::buildSuccessElements(const SuccessRule& rule, const char* listKeyword,
                                            const char* subcommand, const VarIndices& variables,
                                            std::vector<BinInfoElem>& elements) {
  elements.assign(variables.size(), BinInfoElem());
  for (size_t i = 0; i < variables.size(); ++i) {
    if (!buildSuccessElement(rule, listKeyword, subcommand, variables[i], elements[i])) {
      return false;
    }
  }
  return true;
}

bool PRPCommandParser::buildSuccessElement(const SuccessRule& rule, const char* listKeyword,
                                           const char* subcommand, VarIndex index,
                                           BinInfoElem& element) {
  const BinInfoElem& success = specs_.successInfo();
  const ZELK_Variable& variable = source_.GetVariable(index);
  const bool isString = variable.GetType() > 0;
  element.rule = success.rule;
  element.categorical = success.categorical || (success.rule == kLevels && isString);
  element.obsLength = obsLength(variable.GetType());
  element.printFormat = variable.GetFormat();
  if (!element.categorical && isString) {
    messages_.GenericError(texts::kNumericSuccessOption, rule.qualifier);
    return false;
  }
  if (element.rule == kCutpoint) addCutPoint(rule.cutPoint, rule.tokens, element);
  if (element.rule != kLevels) return true;

  VarSpecObj validator(listKeyword, subcommand, source_);
  validator.SetErrorReporting(false);
  validator.SetVariable(index);
  for (const TokenInfoObj& token : rule.tokens) {
    const double number = token.isNumber() ? token.getNumber() : kSystemMissing;
    if (!addLevel(validator, token.isNumber(), number, token.getText(), element)) {
      messages_.GenericError(texts::kInvalidSuccessLevel);
      return false;
    }
  }
  return true;
}

}  // namespace proportions
