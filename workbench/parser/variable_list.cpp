#include <algorithm>
#include <cmath>
#include <cstring>

#include "workbench/dataset/value_text.h"
#include "workbench/output/report.h"
#include "workbench/parser/command_text.h"
#include "workbench/parser/syntax_error.h"
#include "workbench/parser/variable_names.h"
#include "workbench/session/session.h"
#include "workbench/text/nearest.h"

using workbench::currentSession;
using workbench::SyntaxProblem;
using Kind = TokenInfoObj::Kind;
using Tokens = std::vector<TokenInfoObj>;

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

  bool fail(const TokenInfoObj& token, const std::string& what, const std::string& suggestion = "");
  bool failAtEnd(const std::string& what);
  bool resolve(const TokenInfoObj& token, VarIndex& index);
  bool resolveRange(const Tokens& tokens, size_t& at);
  bool takeQualifier(const Tokens& tokens, size_t at);
  void addAll();
  std::string place() const;
};

bool VarSpecObj::Impl::fail(const TokenInfoObj& token, const std::string& what,
                            const std::string& suggestion) {
  if (reporting) {
    workbench::reportSyntaxError(*currentSession().command, {token.position(), what, suggestion});
  }
  return false;
}

bool VarSpecObj::Impl::failAtEnd(const std::string& what) {
  if (reporting) {
    const workbench::CommandTokens& command = *currentSession().command;
    workbench::reportSyntaxError(command, {command.endPosition(), what, ""});
  }
  return false;
}

/// How messages call the list.
std::string VarSpecObj::Impl::place() const {
  if (subcommand.empty()) return listName;
  return listName.empty() ? subcommand : "the list after " + listName + " of " + subcommand;
}

bool VarSpecObj::Impl::resolve(const TokenInfoObj& token, VarIndex& index) {
  if (token.isReservedWord()) {
    return fail(token, "\"" + token.getText() +
                           "\" is a reserved word and cannot stand here. A variable of that name "
                           "goes in double quotes.");
  }
  if (token.kind() != Kind::kWord && token.kind() != Kind::kString) {
    return fail(token,
                "\"" + token.getText() + "\" stands where the name of a variable is expected.");
  }
  index = source.FindVariable(token.getText());
  if (index >= 0) return true;
  std::vector<std::string> names;
  for (VarIndex i = 0; i < source.GetVariableCount(); ++i) {
    names.push_back(currentSession().dataset->declaration(i).name);
  }
  return fail(token, "\"" + token.getText() + "\" is not a variable of the data.",
              workbench::nearest(token.getText(), names));
}

bool VarSpecObj::Impl::resolveRange(const Tokens& tokens, size_t& at) {
  VarIndex first = -1;
  if (!resolve(tokens[at], first)) return false;
  if (at + 1 >= tokens.size() || tokens[at + 1].getOperatorCode() != workbench::kOperatorTo) {
    valid.push_back(first);
    ++at;
    return true;
  }
  if (at + 2 >= tokens.size()) return fail(tokens[at + 1], "TO has no variable after it.");
  VarIndex last = -1;
  if (!resolve(tokens[at + 2], last)) return false;
  if (last < first) {
    return fail(tokens[at + 2],
                "The variable after TO must not stand before the first one in the data.");
  }
  for (VarIndex index = first; index <= last; ++index) valid.push_back(index);
  at += 3;
  return true;
}

void VarSpecObj::Impl::addAll() {
  const std::vector<VarIndex> all = workbench::allVariables(*currentSession().dataset);
  valid.insert(valid.end(), all.begin(), all.end());
}

bool VarSpecObj::Impl::takeQualifier(const Tokens& tokens, size_t at) {
  hasQualifier = true;
  const size_t open = at++;
  while (at < tokens.size() && tokens[at].getText() != ")") qualifier.push_back(tokens[at++]);
  if (at >= tokens.size()) return fail(tokens[open], "The parenthesis is not closed.");
  if (at + 1 < tokens.size())
    return fail(tokens[at + 1], "Nothing may follow the parenthesis in a variable list.");
  return true;
}

VarSpecObj::VarSpecObj(const std::string& listName, const CommandDescriptor&,
                       ProcedureDataSource& source, bool isWeight)
    : impl_(new Impl{listName, "", source, isWeight, true, false, false, {}, {}}) {}
VarSpecObj::VarSpecObj(const std::string& listName, const std::string& subcommand,
                       ProcedureDataSource& source)
    : impl_(new Impl{listName, subcommand, source, false, true, false, false, {}, {}}) {}
VarSpecObj::~VarSpecObj() = default;

bool VarSpecObj::ValidateVariables(const Tokens& tokens, int) {
  Impl& list = *impl_;
  list.valid.clear();
  list.qualifier.clear();
  list.hasQualifier = false;
  for (size_t at = 0; at < tokens.size();) {
    const TokenInfoObj& token = tokens[at];
    if (token.kind() == Kind::kSymbol && token.getText() == "(" && list.allowQualifiers) {
      if (!list.takeQualifier(tokens, at)) return false;
      break;
    }
    if (token.getOperatorCode() == workbench::kOperatorAll) {
      list.addAll();
      ++at;
    } else if (!list.resolveRange(tokens, at)) {
      return false;
    }
  }
  if (!list.valid.empty()) return true;
  if (tokens.empty()) return list.failAtEnd("The variables of " + list.place() + " are missing.");
  return list.fail(tokens.front(), "There is no variable in " + list.place() + ".");
}

VarIndex VarSpecObj::ValidateVariable(const TokenInfoObj& token) {
  VarIndex index = -1;
  impl_->valid.clear();
  if (!impl_->resolve(token, index)) return -1;
  impl_->valid.push_back(index);
  return index;
}

bool VarSpecObj::SetVariables(const std::vector<VarIndex>& variables, int) {
  impl_->valid = variables;
  return true;
}

bool VarSpecObj::SetVariable(VarIndex variable) {
  impl_->valid = {variable};
  const workbench::Variable& entry = currentSession().dataset->declaration(variable);
  if (!impl_->isWeight || !entry.isString()) return true;
  if (impl_->reporting) {
    workbench::report(workbench::Severity::kError, "Weight var ^1 string", {entry.name});
  }
  return false;
}

std::vector<VarIndex> VarSpecObj::GetValidVarList() const { return impl_->valid; }

bool VarSpecObj::CheckCommonVars(const VarSpecObj& other) {
  for (const VarIndex index : impl_->valid) {
    const auto& others = other.impl_->valid;
    if (std::find(others.begin(), others.end(), index) == others.end()) continue;
    if (impl_->reporting) {
      workbench::report(workbench::Severity::kError, "Var ^1 common to ^2 and ^3",
                        {currentSession().dataset->declaration(index).name, impl_->place(),
                         other.impl_->place()});
    }
    return false;
  }
  return true;
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
  if (width == 0) {
    const auto value = workbench::parseValue(currentSession().dataset->declaration(index), text);
    if (!value || !std::isfinite(*value)) return false;
    const double number = *value == 0.0 ? 0.0 : *value;  // minus zero is zero
    std::memcpy(buffer, &number, sizeof number);
    return true;
  }
  const size_t length = text.find_last_not_of(' ') + 1;  // npos + 1 is 0
  if (length > static_cast<size_t>(width)) return false;
  const size_t bytes = static_cast<size_t>(width <= 8 ? 1 : (width + 7) / 8) * sizeof(double);
  std::memset(buffer, ' ', bytes);
  std::memcpy(buffer, text.data(), length);
  return true;
}
