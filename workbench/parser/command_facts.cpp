#include "workbench/parser/command_facts.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>

#include "workbench/parser/parsed_command.h"
#include "workbench/parser/variable_names.h"

namespace workbench {
namespace {

using Tokens = std::vector<TokenInfoObj>;

ValueRule ruleNamed(const std::string& name) {
  constexpr std::array<std::pair<const char*, ValueRule>, 5> kRules{
      {{"FIRST", ValueRule::kFirst},
       {"LAST", ValueRule::kLast},
       {"MIDPOINT", ValueRule::kMidpoint},
       {"CUTPOINT", ValueRule::kCutpoint},
       {"LEVEL", ValueRule::kLevel}}};
  for (const auto& [known, rule] : kRules) {
    if (name == known) return rule;
  }
  return ValueRule::kLast;
}

void readRule(SubComObj* subcommand, const char* parameter, RuleFacts& facts) {
  ParamObj* value = subcommand == nullptr ? nullptr : subcommand->getParamObj(parameter);
  std::string name;
  ParamObj* qualifier = nullptr;
  if (value == nullptr || !value->getStringAndQual(name, qualifier)) return;
  facts.rule = ruleNamed(name);
  if (qualifier == nullptr) return;
  facts.values = qualifier->getTokenList();
  for (const TokenInfoObj& token : facts.values) {
    RuleFacts::WrittenLevel& level = facts.levels[token.getText()];
    if (!level.bare && !level.quoted) level.position = token.position();
    (token.kind() == TokenInfoObj::Kind::kString ? level.quoted : level.bare) = true;
  }
}

/// The list's tokens before and after the reserved word of that code.
std::pair<Tokens, Tokens> splitAt(SubComObj& subcommand, int operatorCode) {
  ParamObj* list = subcommand.exportParamObj();
  const Tokens tokens = list == nullptr ? Tokens() : list->getTokenList();
  const auto word = std::find_if(tokens.begin(), tokens.end(), [&](const TokenInfoObj& token) {
    return token.getOperatorCode() == operatorCode;
  });
  Tokens after;
  if (word != tokens.end()) after.assign(word + 1, tokens.end());
  return {Tokens(tokens.begin(), word), after};
}

bool hasKeyword(SubComObj* subcommand, const char* parameter, const char* keyword) {
  ParamObj* value = subcommand == nullptr ? nullptr : subcommand->getParamObj(parameter);
  return value != nullptr && value->isStringValueCase(keyword);
}

void readDesigns(CommandSpec& parsed, const ActiveDataset& dataset, CommandFacts& facts) {
  if (SubComObj* one = parsed.getSubComObj("ONESAMPLE")) {
    facts.design = CommandDesign::kOneSample;
    ParamObj* list = one->exportParamObj();
    if (list != nullptr) facts.tests = namedVariables(list->getTokenList(), dataset);
  }
  if (SubComObj* paired = parsed.getSubComObj("PAIREDSAMPLES")) {
    facts.design = CommandDesign::kPaired;
    const auto [before, after] = splitAt(*paired, kOperatorWith);
    facts.tests = namedVariables(before, dataset);
    facts.second = namedVariables(after, dataset);
  }
  if (SubComObj* independent = parsed.getSubComObj("INDEPENDENTSAMPLES")) {
    facts.design = CommandDesign::kIndependent;
    const auto [before, after] = splitAt(*independent, kOperatorBy);
    facts.tests = namedVariables(before, dataset);
    const std::vector<VarIndex> grouping = namedVariables(after, dataset);
    if (grouping.size() == 1) facts.grouping = grouping.front();
    readRule(independent, "SELECT", facts.groups);
  }
}

}  // namespace

CommandFacts commandFacts(CommandSpec& parsed, const ActiveDataset& dataset) {
  CommandFacts facts;
  readDesigns(parsed, dataset, facts);
  readRule(parsed.getSubComObj("SUCCESS"), "VALUE", facts.success);
  SubComObj* missing = parsed.getSubComObj("MISSING");
  facts.listwise = hasKeyword(missing, "SCOPE", "LISTWISE");
  facts.includesUserMissing = hasKeyword(missing, "USERMISSING", "INCLUDE");
  SubComObj* criteria = parsed.getSubComObj("CRITERIA");
  ParamObj* level = criteria == nullptr ? nullptr : criteria->getParamObj("CILEVEL");
  if (level != nullptr) level->getNumberValue(facts.level);
  return facts;
}

std::vector<VarIndex> CommandFacts::analysed() const {
  std::vector<VarIndex> all = tests;
  const std::set<VarIndex> known(tests.begin(), tests.end());
  std::copy_if(second.begin(), second.end(), std::back_inserter(all),
               [&](VarIndex index) { return known.count(index) == 0; });
  return all;
}

std::vector<VarIndex> CommandFacts::variables() const {
  std::vector<VarIndex> all = analysed();
  if (grouping >= 0 && std::find(all.begin(), all.end(), grouping) == all.end()) {
    all.push_back(grouping);
  }
  return all;
}

}  // namespace workbench
