#include "workbench/parser/parsed_command.h"

#include <algorithm>

namespace {

template <typename List>
auto* findByName(const List& list, const std::string& name) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const auto& entry) { return entry.first == name; });
  return found == list.end() ? nullptr : found->second.get();
}

}  // namespace

ParamObj::ParamObj(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
ParamObj::~ParamObj() = default;

const std::vector<TokenInfoObj>& ParamObj::getTokenList() const { return impl_->tokens; }

bool ParamObj::isStringValueCase(const std::string& keyword) const {
  return std::find(impl_->keywords.begin(), impl_->keywords.end(), keyword) !=
         impl_->keywords.end();
}

std::vector<std::string> ParamObj::getUpStringList() const { return impl_->keywords; }

bool ParamObj::getNumberValue(double& value) const {
  if (!impl_->number) return false;
  value = *impl_->number;
  return true;
}

bool ParamObj::getStringAndQual(std::string& qualifierName, ParamObj*& qualifier) const {
  if (impl_->qualifierName.empty()) return false;
  qualifierName = impl_->qualifierName;
  qualifier = impl_->qualifier.get();
  return true;
}

bool ParamObj::isLeadingToken() const { return impl_->tokens.empty(); }

SubComObj::SubComObj(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
SubComObj::~SubComObj() = default;

ParamObj* SubComObj::exportParamObj() { return impl_->list.get(); }
ParamObj* SubComObj::getParamObj(const std::string& name) {
  return findByName(impl_->parameters, name);
}
std::string SubComObj::getExternalName() const { return impl_->name; }

CommandSpec::CommandSpec() : impl_(std::make_unique<Impl>()) {}
CommandSpec::~CommandSpec() = default;

int CommandSpec::getSubComListSize() const { return static_cast<int>(impl_->subcommands.size()); }
SubComObj* CommandSpec::getSubComObj(const std::string& name) {
  return findByName(impl_->subcommands, name);
}
