/// Matches the tokens of a command against a descriptor.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/parser/command_text.h"
#include "workbench/parser/descriptors.h"
#include "workbench/parser/parsed_command.h"

namespace workbench {

/// One use per command. Stops at the first problem. With `oneMethod` designs keep one method only
/// (keepOneMethod).
class Matcher {
 public:
  Matcher(const CommandTokens& command, const CommandDescriptor& syntax, bool oneMethod)
      : command_(command), tokens_(command.tokens()), syntax_(syntax), oneMethod_(oneMethod) {}

  /// Fills `result`; what is wrong, or nothing.
  std::optional<SyntaxProblem> match(CommandSpec::Impl& result);

 private:
  /// A problem on its way to match().
  struct Failure {
    SyntaxProblem problem;
  };

  bool atEnd() const { return at_ >= tokens_.size(); }
  const TokenInfoObj& token() const { return tokens_[at_]; }
  bool isSymbol(size_t at, char symbol) const;
  bool isSymbol(char symbol) const { return isSymbol(at_, symbol); }
  bool startsParameter() const;
  bool endsValue() const { return atEnd() || isSymbol('/') || startsParameter(); }
  std::string shown() const;
  [[noreturn]] void fail(const std::string& what, const std::string& suggestion = "") const;
  void skipCommas() {
    while (isSymbol(',')) ++at_;
  }

  bool isSubcommandHere() const;
  void refuseMissingSlash() const;

  void matchCommandName();
  void matchSubcommand(CommandSpec::Impl& result);
  void matchParameter(const SubComDescriptor::Impl& subcommand, SubComObj::Impl& result);
  [[noreturn]] void failNoParameter(const SubComDescriptor::Impl& subcommand);
  [[noreturn]] void failUnknownParameter(const SubComDescriptor::Impl& subcommand) const;
  std::unique_ptr<ParamObj> matchList(const SubComDescriptor::Impl& subcommand);
  void takeParentheses(ParamObj::Impl& list);
  double qualifierNumber(const std::string& form) const;
  std::unique_ptr<ParamObj> matchValue(const ParamDescriptor::Impl& parameter);
  void matchKeywords(const ParamDescriptor::Impl& parameter, ParamObj::Impl& result);
  void matchNumber(const ParamDescriptor::Impl& parameter, ParamObj::Impl& result);
  void matchQualified(const ParamDescriptor::Impl& parameter, ParamObj::Impl& result);
  std::unique_ptr<ParamObj> matchQualifierValue(const ParamDescriptor::Impl& qualifier);

  const CommandTokens& command_;
  const std::vector<TokenInfoObj>& tokens_;
  const CommandDescriptor& syntax_;
  const bool oneMethod_;
  size_t at_ = 0;
};

}  // namespace workbench
