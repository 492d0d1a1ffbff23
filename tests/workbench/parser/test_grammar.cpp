#include "tests/workbench/parser/test_grammar.h"

#include "workbench/dataset/value_text.h"
#include "workbench/parser/parsed_command.h"

namespace parser_tests {
namespace {

using namespace UPSpecTypes;

ParamDescriptor parameter(const std::string& name, ParamSpec spec, bool valueRequired = true) {
  return {name, spec, false, valueRequired, kNoBrackets};
}

ParamDescriptor keywords(const std::string& name, ParamSpec spec,
                         const std::vector<std::string>& words) {
  ParamDescriptor descriptor = parameter(name, spec);
  for (const std::string& word : words) descriptor.addStringValue(word);
  return descriptor;
}

SubComDescriptor subcommand(const std::string& name) { return {name, kSubCommand, false, false}; }

void addDesigns(CommandDescriptor& command) {
  SubComDescriptor one = subcommand("ONESAMPLE");
  one.setExportParamDesc(kTokens, true);
  ParamDescriptor testValue = parameter("TESTVAL", kNumber);
  testValue.setLowerBoundary(0.0, kLowerExclusive);
  testValue.setUpperBoundary(1.0, kUpperExclusive);
  one.addParamDesc(testValue);
  one.addParamDesc(keywords("TESTTYPES", kKeywordList, {"EXACT", "MIDP", "SCORE", "ALL", "NONE"}));
  one.addParamDesc(
      keywords("CITYPES", kKeywordList, {"ANSCOMBE", "WALD", "WILSON_SCORE", "ALL", "NONE"}));
  command.addSubComDesc(one);

  SubComDescriptor paired = subcommand("PAIREDSAMPLES");
  paired.setExportParamDesc(kTokens, true);
  paired.addParamDesc(keywords("TESTTYPES", kKeywordList, {"MIDP", "MCNEMAR", "ALL", "NONE"}));
  command.addSubComDesc(paired);

  SubComDescriptor independent = subcommand("INDEPENDENTSAMPLES");
  independent.setExportParamDesc(kTokens, true);
  ParamDescriptor select = parameter("SELECT", kQualified);
  select.addQualifDesc("MIDPOINT");
  select.addQualifDesc(parameter("CUTPOINT", kNumber));
  select.addQualifDesc(parameter("LEVEL", kTokens, false));
  independent.addParamDesc(select);
  command.addSubComDesc(independent);
}

void addSettings(CommandDescriptor& command) {
  SubComDescriptor success = subcommand("SUCCESS");
  ParamDescriptor value = parameter("VALUE", kQualified);
  for (const char* bare : {"FIRST", "LAST", "MIDPOINT"}) value.addQualifDesc(bare);
  value.addQualifDesc(parameter("CUTPOINT", kNumber));
  value.addQualifDesc(parameter("LEVEL", kTokens));
  success.addParamDesc(value);
  command.addSubComDesc(success);

  SubComDescriptor missing = subcommand("MISSING");
  missing.addParamDesc(keywords("SCOPE", kKeyword, {"ANALYSIS", "LISTWISE"}));
  missing.addParamDesc(keywords("USERMISSING", kKeyword, {"EXCLUDE", "INCLUDE"}));
  command.addSubComDesc(missing);

  SubComDescriptor criteria = subcommand("CRITERIA");
  ParamDescriptor level = parameter("CILEVEL", kNumber);
  level.setLowerBoundary(0.0, kLowerInclusive);
  level.setUpperBoundary(100.0, kUpperExclusive);
  criteria.addParamDesc(level);
  command.addSubComDesc(criteria);
}

std::string tokensText(const ParamObj& parameter) {
  std::string text;
  for (const TokenInfoObj& token : parameter.getTokenList()) text += ' ' + tokenText(token);
  return text;
}

std::string parameterText(const ParamObj& parameter) {
  std::string text;
  double number = 0;
  if (parameter.getNumberValue(number)) text += " number " + workbench::shortestNumber(number);
  for (const std::string& keyword : parameter.getUpStringList()) text += ' ' + keyword;
  std::string name;
  ParamObj* qualifier = nullptr;
  if (!parameter.getStringAndQual(name, qualifier)) return text;
  text += " qualifier " + name;
  if (qualifier == nullptr) return text + " bare";
  if (qualifier->getNumberValue(number)) text += " number " + workbench::shortestNumber(number);
  return text + (qualifier->isLeadingToken() ? " leading" : tokensText(*qualifier));
}

}  // namespace

void describeCommand(CommandDescriptor& command) {
  addDesigns(command);
  addSettings(command);
}

std::string tokenText(const TokenInfoObj& token) {
  switch (token.kind()) {
    case TokenInfoObj::Kind::kWord:
      return token.getText() +
             (token.isReservedWord() ? '~' + std::to_string(token.getOperatorCode()) : "");
    case TokenInfoObj::Kind::kNumber:
      return '#' + token.getText() + '=' + workbench::shortestNumber(token.getNumber());
    case TokenInfoObj::Kind::kString:
      return '"' + token.getText() + '"';
    case TokenInfoObj::Kind::kSymbol:
      break;
  }
  return '`' + token.getText() + '`';
}

std::string treeText(CommandSpec& parsed) {
  std::string text = "subcommands " + std::to_string(parsed.getSubComListSize());
  for (const auto& [name, subcommand] : parsed.impl().subcommands) {
    text += '\n' + subcommand->getExternalName();
    if (const ParamObj* list = subcommand->exportParamObj()) text += "\n  list" + tokensText(*list);
    for (const char* known : {"TESTVAL", "TESTTYPES", "CITYPES", "SELECT", "VALUE", "SCOPE",
                              "USERMISSING", "CILEVEL"}) {
      const ParamObj* parameter = subcommand->getParamObj(known);
      if (parameter != nullptr) text += std::string("\n  ") + known + parameterText(*parameter);
    }
  }
  return text;
}

}  // namespace parser_tests
