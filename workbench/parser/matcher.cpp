#include "workbench/parser/matcher.h"

#include <algorithm>

#include "workbench/dataset/value_text.h"
#include "workbench/parser/cut_points.h"
#include "workbench/parser/one_method.h"
#include "workbench/parser/syntax_error.h"
#include "workbench/session/session.h"
#include "workbench/text/nearest.h"

namespace workbench {
namespace {

using Kind = TokenInfoObj::Kind;

std::string joined(const std::vector<std::string>& words) {
  std::string result;
  for (const std::string& word : words) result += (result.empty() ? "" : ", ") + word;
  return result;
}

template <typename List>
std::vector<std::string> namesOf(const List& descriptors) {
  std::vector<std::string> names;
  for (const auto& descriptor : descriptors) names.push_back(descriptor.impl().name);
  return names;
}

template <typename List>
const auto* findDescriptor(const List& descriptors, const std::string& name) {
  const auto found = std::find_if(descriptors.begin(), descriptors.end(),
                                  [&](const auto& d) { return d.impl().name == name; });
  return found == descriptors.end() ? nullptr : &found->impl();
}

std::string rangeText(const ParamDescriptor::Impl& parameter) {
  std::string text;
  if (parameter.lower) {
    text += std::string(parameter.lowerExclusive ? " above " : " of at least ") +
            shortestNumber(*parameter.lower);
  }
  if (parameter.upper) {
    text += std::string(text.empty() ? "" : " and") +
            (parameter.upperExclusive ? " below " : " at most ") + shortestNumber(*parameter.upper);
  }
  return text;
}

bool inRange(const ParamDescriptor::Impl& parameter, double number) {
  if (parameter.lower &&
      (number < *parameter.lower || (parameter.lowerExclusive && number == *parameter.lower)))
    return false;
  return !parameter.upper || number < *parameter.upper ||
         (!parameter.upperExclusive && number == *parameter.upper);
}

std::vector<std::string> qualifierNames(const ParamDescriptor::Impl& parameter) {
  std::vector<std::string> names;
  for (const auto& qualifier : parameter.qualifiers) names.push_back(qualifier.name);
  return names;
}

/// What a parameter takes, as a sentence.
std::string demand(const ParamDescriptor::Impl& parameter) {
  switch (parameter.spec) {
    case UPSpecTypes::kKeyword:
      return parameter.name + " takes one of " + joined(parameter.keywords) + ".";
    case UPSpecTypes::kKeywordList:
      return parameter.name + " takes one or more of " + joined(parameter.keywords) + ".";
    case UPSpecTypes::kNumber:
      return parameter.name + " takes a number" + rangeText(parameter) + ".";
    case UPSpecTypes::kQualified:
      return parameter.name + " takes one of " + joined(qualifierNames(parameter)) + ".";
    case UPSpecTypes::kTokens:
      break;
  }
  return parameter.name + " takes one or more values.";
}

/// A word that names a variable is not a misplaced keyword.
bool isVariable(const TokenInfoObj& token) {
  const ActiveDataset* dataset = currentSession().dataset;
  return dataset != nullptr && dataset->find(token.getText()) >= 0;
}

/// Values of a qualifier: trailing blanks of strings never count.
TokenInfoObj withoutTrailingBlanks(const TokenInfoObj& token) {
  if (token.kind() != Kind::kString) return token;
  std::string text = token.getText();
  text.erase(text.find_last_not_of(' ') + 1);
  return {Kind::kString, std::move(text), 0.0, 0, token.position()};
}

}  // namespace

std::optional<SyntaxProblem> Matcher::match(CommandSpec::Impl& result) {
  if (command_.problem()) return command_.problem();
  try {
    matchCommandName();
    if (!atEnd() && !isSymbol('/')) matchSubcommand(result);
    while (!atEnd()) {
      ++at_;
      matchSubcommand(result);
    }
  } catch (const Failure& failure) {
    return failure.problem;
  }
  return std::nullopt;
}

bool Matcher::isSymbol(size_t at, char symbol) const {
  return at < tokens_.size() && workbench::isSymbol(tokens_[at], symbol);
}

bool Matcher::startsParameter() const {
  return !atEnd() && token().kind() == Kind::kWord && isSymbol(at_ + 1, '=');
}

std::string Matcher::shown() const {
  return atEnd() ? "The command ends" : shortQuoted(token().getText()) + " stands";
}

void Matcher::fail(const std::string& what, const std::string& suggestion) const {
  const size_t place = atEnd() ? command_.endPosition() : token().position();
  throw Failure{{place, what, suggestion}};
}

bool Matcher::isSubcommandHere() const {
  return !atEnd() && token().kind() == Kind::kWord &&
         findDescriptor(syntax_.impl().subcommands, token().getUpText()) != nullptr;
}

/// What is wrong when a subcommand, or another command, begins here.
void Matcher::refuseMissingSlash() const {
  if (!atEnd() && token().kind() == Kind::kWord && token().getUpText() == syntax_.impl().name) {
    fail(
        "A command begins here, but the one before it has no end: put a full stop at the end of "
        "its last line.");
  }
  if (!isSubcommandHere()) return;
  fail("\"/\" is missing before the subcommand " + token().getUpText() + ".");
}

void Matcher::matchCommandName() {
  const std::string& name = syntax_.impl().name;
  std::vector<std::string> starts = {name};
  for (const SubComDescriptor& subcommand : syntax_.impl().subcommands) {
    if (subcommand.impl().hasList) starts.push_back(subcommand.impl().name);
  }
  // Before a subcommand with a list of variables the name may be left out.
  const size_t first = isSymbol('/') ? 1 : 0;
  const bool isWord = first < tokens_.size() && tokens_[first].kind() == Kind::kWord;
  const std::string word = isWord ? tokens_[first].getUpText() : "";
  if (std::find(starts.begin() + 1, starts.end(), word) != starts.end()) return;
  if (first == 0 && word == name) {
    ++at_;
    return;
  }
  if (first == 1 || !isWord) {
    fail("A command begins with its name, " + name + ", or with one of the subcommands " +
         joined({starts.begin() + 1, starts.end()}) + ".");
  }
  fail(shortQuoted(token().getText()) + " is not a command that runs here; " + name + " is.",
       nearest(token().getText(), starts));
}

void Matcher::matchSubcommand(CommandSpec::Impl& result) {
  const std::vector<std::string> known = namesOf(syntax_.impl().subcommands);
  if (atEnd() || token().kind() != Kind::kWord) {
    fail(shown() + " where a subcommand is expected: " + joined(known) + ".");
  }
  const std::string name = token().getUpText();
  const auto* descriptor = findDescriptor(syntax_.impl().subcommands, name);
  if (descriptor == nullptr) {
    fail(shortQuoted(token().getText()) + " is not a subcommand. Subcommands are " + joined(known) +
             ".",
         nearest(name, known));
  }
  for (const auto& [earlier, subcommand] : result.subcommands) {
    if (earlier == name) fail("The subcommand " + name + " is given twice; give it once.");
  }
  ++at_;
  auto parsed = std::make_unique<SubComObj::Impl>();
  parsed->name = name;
  if (descriptor->hasList) parsed->list = matchList(*descriptor);
  while (!atEnd() && !isSymbol('/')) matchParameter(*descriptor, *parsed);
  if (oneMethod_ && descriptor->hasList) keepOneMethod(*parsed);
  result.subcommands.emplace_back(name, std::make_unique<SubComObj>(std::move(parsed)));
}

/// The unnamed list goes on to the first NAME= or the next subcommand; its meaning is the
/// procedure's business.
std::unique_ptr<ParamObj> Matcher::matchList(const SubComDescriptor::Impl& subcommand) {
  auto list = std::make_unique<ParamObj::Impl>();
  while (!endsValue()) {
    if (isSymbol('(')) {
      takeParentheses(*list);
      continue;
    }
    if (isSymbol('=')) fail("\"=\" has no parameter name before it.");
    if (isSymbol(')')) fail("\")\" has no \"(\" before it.");
    if (token().kind() == Kind::kWord && !isVariable(token())) {
      if (findDescriptor(subcommand.parameters, token().getUpText()) != nullptr) {
        failNoParameter(subcommand);
      }
      refuseMissingSlash();
    }
    if (!isSymbol(',')) list->tokens.push_back(token());
    ++at_;
  }
  return std::make_unique<ParamObj>(std::move(list));
}

/// What stands in parentheses, the parentheses included.
void Matcher::takeParentheses(ParamObj::Impl& list) {
  const size_t open = at_;
  do {
    if (!isSymbol(',')) list.tokens.push_back(token());
    ++at_;
    if (isSymbol('(')) fail("A second \"(\" stands inside parentheses.");
    if (endsValue()) {
      at_ = open;
      fail("The \"(\" is not closed.");
    }
  } while (!isSymbol(')'));
  list.tokens.push_back(tokens_[at_++]);
}

void Matcher::matchParameter(const SubComDescriptor::Impl& subcommand, SubComObj::Impl& result) {
  skipCommas();
  if (atEnd() || isSymbol('/')) return;
  if (!startsParameter()) failNoParameter(subcommand);
  const std::string name = token().getUpText();
  const auto* descriptor = findDescriptor(subcommand.parameters, name);
  if (descriptor == nullptr) failUnknownParameter(subcommand);
  for (const auto& [earlier, parameter] : result.parameters) {
    if (earlier == name) fail("The parameter " + name + " is given twice; give it once.");
  }
  at_ += 2;
  result.parameters.emplace_back(name, matchValue(*descriptor));
}

/// At a token that should begin NAME=VALUE.
void Matcher::failNoParameter(const SubComDescriptor::Impl& subcommand) {
  const std::vector<std::string> known = namesOf(subcommand.parameters);
  const bool isWord = token().kind() == Kind::kWord;
  if (isWord && findDescriptor(subcommand.parameters, token().getUpText()) != nullptr) {
    const std::string name = token().getUpText();
    ++at_;
    fail("\"=\" is missing after the parameter " + name + ".");
  }
  refuseMissingSlash();
  fail(shown() + " where NAME=VALUE is expected. Parameters of " + subcommand.name + " are " +
           joined(known) + ".",
       isWord ? nearest(token().getText(), known) : "");
}

/// At the name of NAME=VALUE.
void Matcher::failUnknownParameter(const SubComDescriptor::Impl& subcommand) const {
  const std::vector<std::string> known = namesOf(subcommand.parameters);
  std::string what = shortQuoted(token().getText()) + " is not a parameter of " + subcommand.name +
                     ". Parameters of " + subcommand.name + " are " + joined(known) + ".";
  const std::string name = token().getUpText();
  const std::string suggestion = nearest(name, known);
  for (const SubComDescriptor& other : syntax_.impl().subcommands) {
    if (findDescriptor(other.impl().parameters, name) == nullptr) continue;
    fail(what + " It belongs to the subcommand " + other.impl().name + ".");
  }
  fail(what, suggestion);
}

std::unique_ptr<ParamObj> Matcher::matchValue(const ParamDescriptor::Impl& parameter) {
  auto result = std::make_unique<ParamObj::Impl>();
  result->name = parameter.name;
  if (endsValue()) fail("The value of " + parameter.name + " is missing. " + demand(parameter));
  switch (parameter.spec) {
    case UPSpecTypes::kKeyword:
    case UPSpecTypes::kKeywordList:
      matchKeywords(parameter, *result);
      break;
    case UPSpecTypes::kNumber:
      matchNumber(parameter, *result);
      break;
    case UPSpecTypes::kQualified:
      matchQualified(parameter, *result);
      break;
    case UPSpecTypes::kTokens:
      while (!endsValue()) result->tokens.push_back(tokens_[at_++]);
      break;
  }
  return std::make_unique<ParamObj>(std::move(result));
}

void Matcher::matchKeywords(const ParamDescriptor::Impl& parameter, ParamObj::Impl& result) {
  const auto isKeyword = [&](const std::string& word) {
    return std::find(parameter.keywords.begin(), parameter.keywords.end(), word) !=
           parameter.keywords.end();
  };
  const bool single = parameter.spec == UPSpecTypes::kKeyword;
  for (skipCommas(); !endsValue(); skipCommas()) {
    const std::string word = token().getUpText();
    const bool isWord = token().kind() == Kind::kWord;
    if (!isWord && isKeyword(word)) fail("A keyword stands without quotes.");
    if (single && !result.keywords.empty() && (isKeyword(word) || !isSubcommandHere())) {
      fail(shown() + " after the one keyword that " + parameter.name + " takes.");
    }
    if (!isWord || !isKeyword(word)) {
      refuseMissingSlash();
      fail(shortQuoted(token().getText()) + " is not a keyword of " + parameter.name + ". " +
               demand(parameter),
           isWord ? nearest(word, parameter.keywords) : "");
    }
    result.keywords.push_back(word);
    result.tokens.push_back(tokens_[at_++]);
  }
  if (result.keywords.empty()) {
    fail("The value of " + parameter.name + " is missing. " + demand(parameter));
  }
}

void Matcher::matchNumber(const ParamDescriptor::Impl& parameter, ParamObj::Impl& result) {
  if (!token().isNumber()) {
    fail(shown() + " where a number is expected. " + demand(parameter));
  }
  if (!inRange(parameter, token().getNumber())) {
    fail(shortQuoted(token().getText()) + " is out of range. " + demand(parameter));
  }
  result.number = token().getNumber();
  result.tokens.push_back(tokens_[at_++]);
}

void Matcher::matchQualified(const ParamDescriptor::Impl& parameter, ParamObj::Impl& result) {
  const std::vector<std::string> known = qualifierNames(parameter);
  const std::string word = token().kind() == Kind::kWord ? token().getUpText() : "";
  const auto found = std::find(known.begin(), known.end(), word);
  if (found == known.end()) {
    fail(shortQuoted(token().getText()) + " is not a value of " + parameter.name + ". " +
             demand(parameter),
         word.empty() ? "" : nearest(word, known));
  }
  const auto& qualifier = parameter.qualifiers[static_cast<size_t>(found - known.begin())];
  ++at_;
  result.qualifierName = word;
  if (qualifier.value) {
    result.qualifier = matchQualifierValue(qualifier.value->impl());
  } else if (isSymbol('(')) {
    fail(word + " takes no value in parentheses.");
  }
}

/// The number at hand, or the seconds of a date or time in quotes.
double Matcher::qualifierNumber(const std::string& form) const {
  if (token().isNumber()) return token().getNumber();
  std::optional<double> instant;
  if (token().kind() == Kind::kString) instant = instantOf(token().getText());
  if (!instant) fail(form);
  return *instant;
}

std::unique_ptr<ParamObj> Matcher::matchQualifierValue(const ParamDescriptor::Impl& qualifier) {
  auto result = std::make_unique<ParamObj::Impl>();
  result->name = qualifier.name;
  const bool isNumber = qualifier.spec == UPSpecTypes::kNumber;
  const std::string form =
      qualifier.name + (isNumber
                            ? " takes one number in parentheses, as in " + qualifier.name + "(5)."
                            : " takes values in parentheses, as in " + qualifier.name + "(1 2).");
  if (!isSymbol('(')) {
    if (qualifier.valueRequired) fail(form);
    return std::make_unique<ParamObj>(std::move(result));
  }
  ++at_;
  for (skipCommas(); !isSymbol(')'); skipCommas()) {
    if (endsValue()) fail("\")\" is missing after the values of " + qualifier.name + ".");
    if (token().kind() == Kind::kSymbol) fail(shown() + " where a value is expected. " + form);
    if (isNumber) {
      if (result->number) fail(form);
      result->number = qualifierNumber(form);
      if (!inRange(qualifier, *result->number)) {
        fail(shortQuoted(token().getText()) + " is out of range. " + demand(qualifier));
      }
    }
    result->tokens.push_back(withoutTrailingBlanks(tokens_[at_++]));
  }
  if (result->tokens.empty() && qualifier.valueRequired) {
    fail("There is no value in the parentheses. " + form);
  }
  ++at_;
  return std::make_unique<ParamObj>(std::move(result));
}

}  // namespace workbench
