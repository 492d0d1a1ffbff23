// The tokens, the parser and the parsed command.
#include <memory>
#include <utility>

#include "host/parser.h"
#include "tests/recording/command_text.h"
#include "tests/recording/host.h"

using recording::Call;
using recording::Host;
using recording::Kind;
using recording::Life;
using recording::Raw;

struct ParamObj::Impl {
  Life self{Kind::kParamObj};
  recording::ParamTree tree;
  std::unique_ptr<ParamObj> qualifier;
};

struct SubComObj::Impl {
  Life self{Kind::kSubComObj};
  std::string name;
  std::unique_ptr<ParamObj> unnamed;
  std::vector<std::pair<std::string, std::unique_ptr<ParamObj>>> params;
};

struct CommandSpec::Impl {
  Life self{Kind::kCommandSpec};
  std::vector<std::pair<std::string, std::unique_ptr<SubComObj>>> subcommands;
};

struct ZELK_TokenSequence::Impl {
  Life self{Kind::kTokenSequence};
  std::vector<TokenInfoObj> tokens;
};

struct UniversalParser::Impl {
  Life self{Kind::kUniversalParser};
  ZELK_TokenSequence* tokens = nullptr;
  CommandSpec* result = nullptr;
};

namespace {

std::unique_ptr<ParamObj> makeParam(const recording::ParamTree& tree) {
  auto impl = std::make_unique<ParamObj::Impl>();
  impl->tree = tree;
  if (tree.tokens.size() == 1) {
    auto qualifier = std::make_unique<ParamObj::Impl>();
    qualifier->tree.tokens = tree.inParentheses;
    impl->qualifier = std::make_unique<ParamObj>(std::move(qualifier));
  }
  return std::make_unique<ParamObj>(std::move(impl));
}

std::unique_ptr<SubComObj> makeSubcommand(const recording::SubComTree& tree) {
  auto impl = std::make_unique<SubComObj::Impl>();
  impl->name = tree.name;
  if (!tree.unnamed.tokens.empty()) impl->unnamed = makeParam(tree.unnamed);
  for (const recording::ParamTree& param : tree.params) {
    impl->params.emplace_back(param.name, makeParam(param));
  }
  return std::make_unique<SubComObj>(std::move(impl));
}

}  // namespace

std::string TokenInfoObj::getUpText() const {
  std::string text = text_;
  for (char& letter : text) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return text;
}

ParamObj::ParamObj(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
ParamObj::~ParamObj() = default;

const std::vector<TokenInfoObj>& ParamObj::getTokenList() const {
  Call call(impl_->self, "getTokenList");
  call.givesText(recording::describe(impl_->tree.tokens));
  return impl_->tree.tokens;
}

bool ParamObj::isStringValueCase(const std::string& keyword) const {
  Call call(impl_->self, "isStringValueCase", keyword);
  bool given = false;
  for (const TokenInfoObj& token : impl_->tree.tokens) given |= token.getUpText() == keyword;
  return call.gives(given);
}

std::vector<std::string> ParamObj::getUpStringList() const {
  Call call(impl_->self, "getUpStringList");
  std::vector<std::string> keywords;
  for (const TokenInfoObj& token : impl_->tree.tokens) keywords.push_back(token.getUpText());
  return call.gives(keywords);
}

bool ParamObj::getNumberValue(double& value) const {
  Call call(impl_->self, "getNumberValue");
  const auto& tokens = impl_->tree.tokens;
  if (!recording::flagOr(call, tokens.size() == 1 && tokens[0].isNumber())) {
    return call.gives(false);
  }
  value = tokens.at(0).getNumber();
  call.givesText("true " + recording::shown(value));
  return true;
}

bool ParamObj::getStringAndQual(std::string& qualifierName, ParamObj*& qualifier) const {
  Call call(impl_->self, "getStringAndQual");
  if (!recording::flagOr(call, impl_->qualifier != nullptr)) return call.gives(false);
  qualifierName = impl_->tree.tokens.at(0).getUpText();
  qualifier = impl_->qualifier.get();
  call.givesText("true " + recording::shown(qualifierName) + " " + qualifier->impl_->self.name());
  return true;
}

bool ParamObj::isLeadingToken() const {
  Call call(impl_->self, "isLeadingToken");
  return call.gives(impl_->tree.tokens.empty());
}

SubComObj::SubComObj(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
SubComObj::~SubComObj() = default;

ParamObj* SubComObj::exportParamObj() {
  Call call(impl_->self, "exportParamObj");
  ParamObj* param = impl_->unnamed.get();
  call.givesText(param == nullptr ? "null" : "the list");
  return param;
}

ParamObj* SubComObj::getParamObj(const std::string& name) {
  Call call(impl_->self, "getParamObj", name);
  for (const auto& [paramName, param] : impl_->params) {
    if (paramName != name) continue;
    call.givesText("given");
    return param.get();
  }
  call.givesText("null");
  return nullptr;
}

std::string SubComObj::getExternalName() const {
  return Call(impl_->self, "getExternalName").gives(impl_->name);
}

CommandSpec::CommandSpec() : impl_(std::make_unique<Impl>()) { Call(impl_->self, "new").done(); }
CommandSpec::~CommandSpec() = default;

int CommandSpec::getSubComListSize() const {
  Call call(impl_->self, "getSubComListSize");
  return call.gives(static_cast<int>(impl_->subcommands.size()));
}

SubComObj* CommandSpec::getSubComObj(const std::string& name) {
  Call call(impl_->self, "getSubComObj", name);
  for (const auto& [subcommandName, subcommand] : impl_->subcommands) {
    if (subcommandName != name) continue;
    call.givesText("given");
    return subcommand.get();
  }
  call.givesText("null");
  return nullptr;
}

ZELK_TokenSequence::ZELK_TokenSequence(bool current) : impl_(std::make_unique<Impl>()) {
  Call(impl_->self, "new", current).done();
  if (current) impl_->tokens = recording::tokensOf(Host::current().script().command);
}

ZELK_TokenSequence::~ZELK_TokenSequence() = default;

UniversalParser::UniversalParser(ZELK_TokenSequence& tokens, CommandSpec& result,
                                 const CommandDescriptor&)
    : impl_(std::make_unique<Impl>()) {
  impl_->tokens = &tokens;
  impl_->result = &result;
  Call(impl_->self, "new", tokens.impl().self, result.impl().self).done();
}

UniversalParser::~UniversalParser() = default;

int UniversalParser::getCommandSpecifications() {
  Call call(impl_->self, "getCommandSpecifications");
  const int result = recording::numberOr(call, 0);
  if (result != 0) return call.gives(result);
  for (const auto& tree : recording::parseCommand(impl_->tokens->impl().tokens)) {
    impl_->result->impl().subcommands.emplace_back(tree.name, makeSubcommand(tree));
  }
  return call.gives(0);
}
