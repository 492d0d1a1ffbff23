// Variable lists: names are resolved for well-formed lists; a script can make any step refuse.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "host/parser.h"
#include "tests/recording/command_text.h"
#include "tests/recording/host.h"
#include "workbench/output/report.h"

using recording::Call;
using recording::Kind;
using recording::Life;
using recording::Quiet;
using recording::Raw;

struct VarSpecObj::Impl {
  Impl(const std::string& name, ProcedureDataSource& dataSource)
      : listName(name), source(dataSource) {}

  void complain(const std::string& key, const std::string& argument) const {
    if (reporting) workbench::report(workbench::Severity::kError, key, {argument});
  }
  VarIndex find(const TokenInfoObj& token) const {
    const Quiet quiet;
    return token.isNumber() || token.isReservedWord() ? -1 : source.FindVariable(token.getText());
  }
  const ZELK_Variable& variableOf(VarIndex index) const {
    const Quiet quiet;
    return source.GetVariable(index);
  }
  bool resolve(const std::vector<TokenInfoObj>& tokens);
  void addAll();

  Life self{Kind::kVarSpecObj};
  std::string listName;
  ProcedureDataSource& source;
  bool reporting = true;
  bool allowQualifiers = false;
  bool hasQualifier = false;
  std::vector<VarIndex> valid;
  std::vector<TokenInfoObj> qualifier;
};

/// ALL leaves out the weight and the split variables.
void VarSpecObj::Impl::addAll() {
  const Quiet quiet;
  for (VarIndex index = 0; index < source.GetVariableCount(); ++index) {
    bool special = index == source.GetWeightVarIndex();
    for (int32_t at = 0; at < source.GetNSplitVars(); ++at) {
      special |= index == source.GetSplitVarIndex(at);
    }
    if (!special) valid.push_back(index);
  }
}

bool VarSpecObj::Impl::resolve(const std::vector<TokenInfoObj>& tokens) {
  valid.clear();
  qualifier.clear();
  hasQualifier = false;
  size_t end = tokens.size();
  for (size_t at = 0; allowQualifiers && at < tokens.size(); ++at) {
    if (tokens[at].kind() != TokenInfoObj::Kind::kSymbol || tokens[at].getText() != "(") continue;
    end = at;
    hasQualifier = true;
    for (++at; at < tokens.size() && tokens[at].getText() != ")"; ++at) {
      qualifier.push_back(tokens[at]);
    }
    break;
  }
  for (size_t at = 0; at < end; ++at) {
    const std::string word = tokens[at].isReservedWord() ? tokens[at].getUpText() : "";
    if (word == "ALL") {
      addAll();
      continue;
    }
    const bool isEndOfRange = word == "TO" && at > 0 && at + 1 < end;
    const VarIndex index = find(tokens[isEndOfRange ? at + 1 : at]);
    if (index < 0) {
      complain("Variable ^1 is not there ...", tokens[at].getText());
      return false;
    }
    if (isEndOfRange) {
      for (VarIndex between = valid.back() + 1; between < index; ++between) {
        valid.push_back(between);
      }
    } else {
      valid.push_back(index);
    }
  }
  if (valid.empty()) complain("No variables ...", listName);
  return !valid.empty();
}

VarSpecObj::VarSpecObj(const std::string& listName, const CommandDescriptor&,
                       ProcedureDataSource& source, bool isWeight)
    : impl_(std::make_unique<Impl>(listName, source)) {
  Call(impl_->self, "new", listName, Raw{"command"}, isWeight).done();
}

VarSpecObj::VarSpecObj(const std::string& listName, const std::string& subcommand,
                       ProcedureDataSource& source)
    : impl_(std::make_unique<Impl>(listName, source)) {
  Call(impl_->self, "new", listName, subcommand).done();
}

VarSpecObj::~VarSpecObj() = default;

bool VarSpecObj::ValidateVariables(const std::vector<TokenInfoObj>& tokens, int repeatOption) {
  Call call(impl_->self, "ValidateVariables", Raw{recording::describe(tokens)}, repeatOption);
  return call.gives(recording::flagOr(call, true) && impl_->resolve(tokens));
}

VarIndex VarSpecObj::ValidateVariable(const TokenInfoObj& token) {
  Call call(impl_->self, "ValidateVariable", Raw{token.getText()});
  const VarIndex index = recording::numberOr(call, impl_->find(token));
  if (index < 0) impl_->complain("Variable ^1 is not there ...", token.getText());
  impl_->valid.clear();
  if (index >= 0) impl_->valid.push_back(index);
  return call.gives(index);
}

bool VarSpecObj::SetVariables(const std::vector<VarIndex>& variables, int repeatOption) {
  Call call(impl_->self, "SetVariables", variables, repeatOption);
  impl_->valid = variables;
  return call.gives(recording::flagOr(call, true));
}

bool VarSpecObj::SetVariable(VarIndex variable) {
  Call call(impl_->self, "SetVariable", variable);
  const bool isString = impl_->variableOf(variable).GetType() > 0;
  const bool refused = impl_->listName == "WEIGHT" && isString;
  if (refused) impl_->complain("Weight is a string ...", "");
  impl_->valid.assign(1, variable);
  return call.gives(recording::flagOr(call, !refused));
}

std::vector<VarIndex> VarSpecObj::GetValidVarList() const {
  return Call(impl_->self, "GetValidVarList").gives(impl_->valid);
}

bool VarSpecObj::CheckCommonVars(const VarSpecObj& other) {
  Call call(impl_->self, "CheckCommonVars", other.impl_->self);
  const auto& others = other.impl_->valid;
  const bool common = std::any_of(impl_->valid.begin(), impl_->valid.end(), [&](VarIndex index) {
    return std::find(others.begin(), others.end(), index) != others.end();
  });
  if (common) impl_->complain("Variable in two lists ...", impl_->listName);
  return call.gives(recording::flagOr(call, !common));
}

void VarSpecObj::SetAllowQualifiers(bool allow) {
  Call(impl_->self, "SetAllowQualifiers", allow).done();
  impl_->allowQualifiers = allow;
}

const std::vector<TokenInfoObj>& VarSpecObj::GetQualTokenList() const {
  Call call(impl_->self, "GetQualTokenList");
  call.givesText(recording::describe(impl_->qualifier));
  return impl_->qualifier;
}

bool VarSpecObj::HasQualifier() const {
  return Call(impl_->self, "HasQualifier").gives(impl_->hasQualifier);
}

bool VarSpecObj::ValidateCatValue(const std::string& text, void* buffer, ZELK_Format& format) {
  Call call(impl_->self, "ValidateCatValue", text);
  if (impl_->valid.empty()) throw std::logic_error("ValidateCatValue without a variable");
  const ZELK_Variable& variable = impl_->variableOf(impl_->valid.back());
  bool accepted = false;
  const std::string& number =  // a script may have a text stand for another number
      call.answer() != nullptr && *call.answer() != "true" && *call.answer() != "false"
          ? *call.answer()
          : text;
  if (variable.GetType() == 0) {
    char* end = nullptr;
    const double value = std::strtod(number.c_str(), &end);
    accepted = !number.empty() && *end == '\0';
    if (accepted) std::memcpy(buffer, &value, sizeof value);
  } else if (text.size() <= static_cast<size_t>(variable.GetType())) {
    accepted = true;
    const size_t words = static_cast<size_t>(ObsLength(variable.GetType()));
    std::memset(buffer, ' ', words * sizeof(double));
    std::memcpy(buffer, text.data(), text.size());
  }
  format = variable.GetFormat();
  return call.gives(&number == &text ? recording::flagOr(call, accepted) : accepted);
}

void VarSpecObj::SetErrorReporting(bool on) {
  Call(impl_->self, "SetErrorReporting", on).done();
  impl_->reporting = on;
}
