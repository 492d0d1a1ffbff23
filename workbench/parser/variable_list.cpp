#include <algorithm>
#include <cstring>
#include <optional>

#include "workbench/dataset/variable.h"
#include "workbench/output/report.h"
#include "workbench/parser/command_facts.h"
#include "workbench/parser/command_text.h"
#include "workbench/parser/syntax_error.h"
#include "workbench/parser/variable_names.h"
#include "workbench/session/session.h"
#include "workbench/text/nearest.h"

using workbench::currentSession;
using workbench::isSymbol;
using workbench::shortQuoted;
using Kind = TokenInfoObj::Kind;
using Tokens = std::vector<TokenInfoObj>;

namespace {

/// Repeats are kept, so a short text can name the variables of a wide file without end.
constexpr size_t kMostEntries = 1'000'000;

}  // namespace

struct VarSpecObj::Impl {
  std::string listName;
  std::string subcommand;
  ProcedureDataSource& source;
  bool isWeight;
  bool reporting = true;
  bool allowQualifiers = false;
  bool hasQualifier = false;
  Tokens qualifier;
  std::vector<VarIndex> valid;
  /// Where each of `valid` was written; empty when they were not written in the command.
  std::vector<size_t> positions;
  /// Of the variable whose values are read as levels, made when first needed.
  std::optional<workbench::LabelIndex> labels;

  void clear();
  bool add(VarIndex index, const TokenInfoObj& token);
  bool fail(const TokenInfoObj& token, const std::string& what, const std::string& suggestion = "");
  bool failEmpty();
  size_t placeOfList(const workbench::CommandTokens& command) const;
  bool resolve(const TokenInfoObj& token, VarIndex& index);
  bool resolveAll(const Tokens& tokens);
  bool resolveRange(const Tokens& tokens, size_t& at);
  bool takeQualifier(const Tokens& tokens, size_t at);
  bool addAll(const TokenInfoObj& token);
  std::string place() const;
  void reportCommon(const Impl& other, ptrdiff_t which) const;
  std::optional<workbench::SplitValue> readLevel(VarIndex index, const std::string& text);
  workbench::LevelReading readLevelAs(VarIndex index, const std::string& text,
                                      const workbench::RuleFacts::WrittenLevel& written);
};

bool VarSpecObj::Impl::fail(const TokenInfoObj& token, const std::string& what,
                            const std::string& suggestion) {
  if (reporting) {
    workbench::reportSyntaxError(*currentSession().command, {token.position(), what, suggestion});
  }
  return false;
}

bool VarSpecObj::Impl::failEmpty() {
  if (reporting) {
    const workbench::CommandTokens& command = *currentSession().command;
    workbench::reportSyntaxError(
        command, {placeOfList(command), "There is no variable in " + place() + "."});
  }
  return false;
}

/// Where the list's first variable should stand: after the subcommand's name.
size_t VarSpecObj::Impl::placeOfList(const workbench::CommandTokens& command) const {
  const Tokens& tokens = command.tokens();
  for (size_t at = 0; at + 1 < tokens.size(); ++at) {
    const bool begins = at <= 1 || isSymbol(tokens[at - 1], '/');
    if (begins && tokens[at].kind() == Kind::kWord && tokens[at].getUpText() == subcommand) {
      return tokens[at + 1].position();
    }
  }
  return command.endPosition();
}

void VarSpecObj::Impl::clear() {
  valid.clear();
  positions.clear();
  qualifier.clear();
  labels.reset();
  hasQualifier = false;
}

bool VarSpecObj::Impl::add(VarIndex index, const TokenInfoObj& token) {
  if (valid.size() >= kMostEntries) {
    return fail(token, "The list names more than a million variables, repeats included.");
  }
  const std::string reason = currentSession().dataset->unusableBecause(index);
  if (!reason.empty()) return fail(token, reason + ".");
  valid.push_back(index);
  positions.push_back(token.position());
  return true;
}

/// How messages call the list.
std::string VarSpecObj::Impl::place() const {
  if (subcommand.empty()) return listName;
  return (listName.empty() ? "the variable list" : "the list after " + listName) + " of " +
         subcommand;
}

/// `which` is a position in `valid`.
void VarSpecObj::Impl::reportCommon(const Impl& other, ptrdiff_t which) const {
  const auto at = static_cast<size_t>(which);
  const std::string& name = currentSession().dataset->declaration(valid[at]).name;
  const std::vector<std::string> arguments = {name, place(), other.place()};
  if (at >= positions.size()) {
    workbench::report(workbench::Severity::kError, "Var ^1 common to ^2 and ^3", arguments);
    return;
  }
  const std::string role =
      other.isWeight ? "is the weight variable and" : "stands in " + other.place() + " and";
  workbench::reportSyntaxError(
      *currentSession().command,
      {positions[at],
       "The variable " + shortQuoted(name) + " " + role + " cannot stand in " + place() + " too.",
       ""});
}

bool VarSpecObj::Impl::resolve(const TokenInfoObj& token, VarIndex& index) {
  if (token.isReservedWord()) {
    return fail(token, shortQuoted(token.getText()) +
                           " is a reserved word and cannot stand here. A variable of that name "
                           "goes in double quotes.");
  }
  if (token.kind() != Kind::kWord && token.kind() != Kind::kString) {
    return fail(token,
                shortQuoted(token.getText()) + " stands where the name of a variable is expected.");
  }
  index = source.FindVariable(token.getText());
  if (index >= 0) return true;
  if (!reporting) return false;
  std::vector<std::string> names;
  for (VarIndex i = 0; i < source.GetVariableCount(); ++i) {
    names.push_back(currentSession().dataset->declaration(i).name);
  }
  const std::string suggestion = workbench::nearest(token.getText(), names);
  return fail(token, shortQuoted(token.getText()) + " is not a variable of the data.",
              suggestion.empty() ? "" : workbench::writtenName(suggestion));
}

/// A level that is written both ways must mean the same in both.
workbench::LevelReading VarSpecObj::Impl::readLevelAs(
    VarIndex index, const std::string& text, const workbench::RuleFacts::WrittenLevel& written) {
  using workbench::LevelForm;
  const workbench::Variable& variable = currentSession().dataset->variable(index);
  if (!labels) labels.emplace(variable);
  const LevelForm form = written.bare ? LevelForm::kBare : LevelForm::kQuoted;
  workbench::LevelReading reading = workbench::readLevel(variable, *labels, text, form);
  if (!written.bare || !written.quoted || !reading.value) return reading;
  workbench::LevelReading other = workbench::readLevel(variable, *labels, text, LevelForm::kQuoted);
  if (!other.value || other.value == reading.value) return other;
  return {{},
          shortQuoted(text) + " stands with and without quotes, which mean different values of " +
              shortQuoted(variable.name) + ".",
          {}};
}

/// The value of a level as the command writes it; a refusal is kept, for the message that follows.
std::optional<workbench::SplitValue> VarSpecObj::Impl::readLevel(VarIndex index,
                                                                 const std::string& text) {
  workbench::CommandFacts* facts = currentSession().facts;
  workbench::RuleFacts::WrittenLevel written;
  if (facts != nullptr) {
    const bool isGrouping = index == facts->grouping;
    const workbench::RuleFacts& rule = isGrouping ? facts->groups : facts->success;
    const auto found = rule.levels.find(text);
    if (found != rule.levels.end()) written = found->second;
    written.bare = written.bare || (isGrouping && rule.values.empty());
  }
  workbench::LevelReading reading = readLevelAs(index, text, written);
  if (!reading.value && facts != nullptr) {
    if (reading.suggestion.empty()) {
      workbench::addOccurringValues(*currentSession().dataset, index, text, reading);
    }
    facts->refusedLevel = workbench::SyntaxProblem{written.position, std::move(reading.problem),
                                                   std::move(reading.suggestion)};
  }
  return reading.value;
}

bool VarSpecObj::Impl::resolveRange(const Tokens& tokens, size_t& at) {
  VarIndex first = -1;
  if (!resolve(tokens[at], first)) return false;
  if (at + 1 >= tokens.size() || tokens[at + 1].getOperatorCode() != workbench::kOperatorTo) {
    ++at;
    return add(first, tokens[at - 1]);
  }
  if (at + 2 >= tokens.size()) return fail(tokens[at + 1], "TO has no variable after it.");
  VarIndex last = -1;
  if (!resolve(tokens[at + 2], last)) return false;
  if (last < first) {
    return fail(tokens[at + 2],
                "The variable after TO must not stand before the first one in the data.");
  }
  for (VarIndex index = first; index <= last; ++index) {
    if (!add(index, tokens[at])) return false;
  }
  at += 3;
  return true;
}

bool VarSpecObj::Impl::addAll(const TokenInfoObj& token) {
  for (const VarIndex index : workbench::allVariables(*currentSession().dataset)) {
    if (!add(index, token)) return false;
  }
  return true;
}

bool VarSpecObj::Impl::takeQualifier(const Tokens& tokens, size_t at) {
  hasQualifier = true;
  const size_t open = at++;
  while (at < tokens.size() && !isSymbol(tokens[at], ')')) qualifier.push_back(tokens[at++]);
  if (at >= tokens.size()) return fail(tokens[open], "The parenthesis is not closed.");
  if (at + 1 < tokens.size())
    return fail(tokens[at + 1], "Nothing may follow the parenthesis in a variable list.");
  return true;
}

bool VarSpecObj::Impl::resolveAll(const Tokens& tokens) {
  for (size_t at = 0; at < tokens.size();) {
    if (allowQualifiers && isSymbol(tokens[at], '(')) {
      if (!takeQualifier(tokens, at)) return false;
      break;
    }
    if (tokens[at].getOperatorCode() == workbench::kOperatorAll) {
      if (!addAll(tokens[at++])) return false;
    } else if (!resolveRange(tokens, at)) {
      return false;
    }
  }
  if (!valid.empty()) return true;
  if (tokens.empty()) return failEmpty();
  return fail(tokens.front(), "There is no variable in " + place() + ".");
}

VarSpecObj::VarSpecObj(const std::string& listName, const CommandDescriptor&,
                       ProcedureDataSource& source, bool isWeight)
    : impl_(new Impl{listName, "", source, isWeight, true, false, false, {}, {}, {}, {}}) {}
VarSpecObj::VarSpecObj(const std::string& listName, const std::string& subcommand,
                       ProcedureDataSource& source)
    : impl_(new Impl{listName, subcommand, source, false, true, false, false, {}, {}, {}, {}}) {}
VarSpecObj::~VarSpecObj() = default;

bool VarSpecObj::ValidateVariables(const Tokens& tokens, int) {
  impl_->clear();
  if (impl_->resolveAll(tokens)) return true;
  impl_->clear();
  return false;
}

VarIndex VarSpecObj::ValidateVariable(const TokenInfoObj& token) {
  VarIndex index = -1;
  impl_->clear();
  if (!impl_->resolve(token, index)) return -1;
  return impl_->add(index, token) ? index : -1;
}

bool VarSpecObj::SetVariables(const std::vector<VarIndex>& variables, int) {
  impl_->clear();
  impl_->valid = variables;
  return true;
}

bool VarSpecObj::SetVariable(VarIndex variable) {
  impl_->clear();
  impl_->valid = {variable};
  const workbench::Variable& entry = currentSession().dataset->variable(variable);
  if (!impl_->isWeight || !entry.isString()) return true;
  if (impl_->reporting) {
    workbench::report(workbench::Severity::kError, "Weight var ^1 string", {entry.name});
  }
  return false;
}

std::vector<VarIndex> VarSpecObj::GetValidVarList() const { return impl_->valid; }

bool VarSpecObj::CheckCommonVars(const VarSpecObj& other) {
  const std::vector<VarIndex>& others = other.impl_->valid;
  const auto isCommon = [&](VarIndex index) {
    return std::find(others.begin(), others.end(), index) != others.end();
  };
  const auto common = std::find_if(impl_->valid.begin(), impl_->valid.end(), isCommon);
  if (common == impl_->valid.end()) return true;
  if (impl_->reporting) impl_->reportCommon(*other.impl_, common - impl_->valid.begin());
  return false;
}

void VarSpecObj::SetAllowQualifiers(bool allow) { impl_->allowQualifiers = allow; }
const Tokens& VarSpecObj::GetQualTokenList() const { return impl_->qualifier; }
bool VarSpecObj::HasQualifier() const { return impl_->hasQualifier; }
void VarSpecObj::SetErrorReporting(bool on) { impl_->reporting = on; }

bool VarSpecObj::ValidateCatValue(const std::string& text, void* buffer, ZELK_Format& format) {
  if (impl_->valid.empty()) return false;
  const VarIndex index = impl_->valid.back();
  const ZELK_Variable& variable = impl_->source.GetVariable(index);
  format = variable.GetFormat();
  const int32_t width = variable.GetType();
  const std::optional<workbench::SplitValue> value = impl_->readLevel(index, text);
  if (!value) return false;
  if (const auto* number = std::get_if<double>(&*value)) {
    std::memcpy(buffer, number, sizeof *number);
    return true;
  }
  const int32_t words = ObsLength(width);
  workbench::writeObservation(std::get<std::string>(*value), words, static_cast<double*>(buffer));
  return true;
}
