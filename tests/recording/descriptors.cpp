// Descriptors of the syntax: every call is recorded, nothing is checked.
#include <memory>

#include "host/parser.h"
#include "tests/recording/host.h"

using recording::Call;
using recording::Kind;
using recording::Life;

struct ParamDescriptor::Impl {
  explicit Impl(std::string paramName) : name(std::move(paramName)) {}
  Life self{Kind::kParamDescriptor};
  std::string name;
};

struct SubComDescriptor::Impl {
  explicit Impl(std::string subcommand) : name(std::move(subcommand)) {}
  Life self{Kind::kSubComDescriptor};
  std::string name;
};

struct CommandDescriptor::Impl {
  Life self{Kind::kCommandDescriptor};
};

ParamDescriptor::ParamDescriptor(const std::string& name, UPSpecTypes::ParamSpec spec, bool flag,
                                 bool valueRequired, UPSpecTypes::BracketOptions brackets)
    : impl_(std::make_unique<Impl>(name)) {
  Call(impl_->self, "new", name, static_cast<int>(spec), flag, valueRequired,
       static_cast<int>(brackets))
      .done();
}

ParamDescriptor::ParamDescriptor(const ParamDescriptor& other)
    : impl_(std::make_unique<Impl>(other.impl_->name)) {
  Call(impl_->self, "new", other.impl_->self).done();
}

ParamDescriptor& ParamDescriptor::operator=(const ParamDescriptor& other) {
  Call(impl_->self, "operator=", other.impl_->self).done();
  impl_->name = other.impl_->name;
  return *this;
}

ParamDescriptor::~ParamDescriptor() = default;

void ParamDescriptor::addStringValue(const std::string& keyword) {
  Call(impl_->self, "addStringValue", keyword).done();
}

void ParamDescriptor::addQualifDesc(const std::string& name) {
  Call(impl_->self, "addQualifDesc", name).done();
}

void ParamDescriptor::addQualifDesc(const ParamDescriptor& qualifier) {
  Call(impl_->self, "addQualifDesc", qualifier.impl_->self, qualifier.impl_->name).done();
}

void ParamDescriptor::setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option) {
  Call(impl_->self, "setLowerBoundary", bound, static_cast<int>(option)).done();
}

void ParamDescriptor::setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option) {
  Call(impl_->self, "setUpperBoundary", bound, static_cast<int>(option)).done();
}

SubComDescriptor::SubComDescriptor(const std::string& name, UPSpecTypes::SubComSpec spec,
                                   bool required, bool repeatable)
    : impl_(std::make_unique<Impl>(name)) {
  Call(impl_->self, "new", name, static_cast<int>(spec), required, repeatable).done();
}

SubComDescriptor::SubComDescriptor(const SubComDescriptor& other)
    : impl_(std::make_unique<Impl>(other.impl_->name)) {
  Call(impl_->self, "new", other.impl_->self).done();
}

SubComDescriptor& SubComDescriptor::operator=(const SubComDescriptor& other) {
  Call(impl_->self, "operator=", other.impl_->self).done();
  impl_->name = other.impl_->name;
  return *this;
}

SubComDescriptor::~SubComDescriptor() = default;

void SubComDescriptor::setExportParamDesc(UPSpecTypes::ParamSpec spec, bool flag) {
  Call(impl_->self, "setExportParamDesc", static_cast<int>(spec), flag).done();
}

void SubComDescriptor::addParamDesc(const ParamDescriptor& parameter) {
  Call(impl_->self, "addParamDesc", parameter.impl().self, parameter.impl().name).done();
}

CommandDescriptor::CommandDescriptor(const std::string& name, const std::string& title)
    : impl_(std::make_unique<Impl>()) {
  Call(impl_->self, "new", name, title).done();
}

CommandDescriptor::~CommandDescriptor() = default;

void CommandDescriptor::addSubComDesc(const SubComDescriptor& subcommand) {
  Call(impl_->self, "addSubComDesc", subcommand.impl().self, subcommand.impl().name).done();
}
