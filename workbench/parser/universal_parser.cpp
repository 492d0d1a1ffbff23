#include <stdexcept>

#include "workbench/parser/command_facts.h"
#include "workbench/parser/cut_points.h"
#include "workbench/parser/matcher.h"
#include "workbench/parser/syntax_error.h"
#include "workbench/session/session.h"

struct ZELK_TokenSequence::Impl {
  const workbench::CommandTokens* command;
};

ZELK_TokenSequence::ZELK_TokenSequence(bool) {
  const workbench::CommandTokens* command = workbench::currentSession().command;
  if (command == nullptr) throw std::logic_error("no command is running");
  impl_ = std::make_unique<Impl>(Impl{command});
}
ZELK_TokenSequence::~ZELK_TokenSequence() = default;

struct UniversalParser::Impl {
  const workbench::CommandTokens& command;
  CommandSpec& result;
  const CommandDescriptor& syntax;
};

UniversalParser::UniversalParser(ZELK_TokenSequence& tokens, CommandSpec& result,
                                 const CommandDescriptor& syntax)
    : impl_(new Impl{*tokens.impl().command, result, syntax}) {}
UniversalParser::~UniversalParser() = default;

int UniversalParser::getCommandSpecifications() {
  const workbench::Session& session = workbench::currentSession();
  auto problem = workbench::Matcher(impl_->command, impl_->syntax, session.oneMethod)
                     .match(impl_->result.impl());
  if (!problem && session.dataset != nullptr) {
    workbench::CommandFacts facts = workbench::commandFacts(impl_->result, *session.dataset);
    problem = workbench::cutPointProblem(facts, *session.dataset);
    if (session.facts != nullptr) *session.facts = std::move(facts);
  }
  if (!problem) return 0;
  workbench::reportSyntaxError(impl_->command, *problem);
  return 1;
}
