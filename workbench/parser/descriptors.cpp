#include "workbench/parser/descriptors.h"

ParamDescriptor::ParamDescriptor(const std::string& name, UPSpecTypes::ParamSpec spec, bool,
                                 bool valueRequired, UPSpecTypes::BracketOptions)
    : impl_(new Impl{name, spec, valueRequired, {}, {}, {}, false, {}, false}) {}
ParamDescriptor::ParamDescriptor(const ParamDescriptor& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}
ParamDescriptor& ParamDescriptor::operator=(const ParamDescriptor& other) {
  impl_ = std::make_unique<Impl>(*other.impl_);
  return *this;
}
ParamDescriptor::~ParamDescriptor() = default;

void ParamDescriptor::addStringValue(const std::string& keyword) {
  impl_->keywords.push_back(keyword);
}
void ParamDescriptor::addQualifDesc(const std::string& name) {
  impl_->qualifiers.push_back({name, std::nullopt});
}
void ParamDescriptor::addQualifDesc(const ParamDescriptor& qualifier) {
  impl_->qualifiers.push_back({qualifier.impl().name, qualifier});
}
void ParamDescriptor::setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option) {
  impl_->lower = bound;
  impl_->lowerExclusive = option == UPSpecTypes::kLowerExclusive;
}
void ParamDescriptor::setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option) {
  impl_->upper = bound;
  impl_->upperExclusive = option == UPSpecTypes::kUpperExclusive;
}

SubComDescriptor::SubComDescriptor(const std::string& name, UPSpecTypes::SubComSpec, bool,
                                   bool repeatable)
    : impl_(new Impl{name, repeatable, false, {}}) {}
SubComDescriptor::SubComDescriptor(const SubComDescriptor& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}
SubComDescriptor& SubComDescriptor::operator=(const SubComDescriptor& other) {
  impl_ = std::make_unique<Impl>(*other.impl_);
  return *this;
}
SubComDescriptor::~SubComDescriptor() = default;

void SubComDescriptor::setExportParamDesc(UPSpecTypes::ParamSpec, bool) { impl_->hasList = true; }
void SubComDescriptor::addParamDesc(const ParamDescriptor& parameter) {
  impl_->parameters.push_back(parameter);
}

CommandDescriptor::CommandDescriptor(const std::string& name, const std::string& title)
    : impl_(new Impl{name, title, {}}) {}
CommandDescriptor::~CommandDescriptor() = default;

void CommandDescriptor::addSubComDesc(const SubComDescriptor& subcommand) {
  impl_->subcommands.push_back(subcommand);
}
