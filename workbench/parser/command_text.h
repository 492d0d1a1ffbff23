/// Command text: cut into commands, and commands into tokens.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/parser.h"

namespace workbench {

/// Operator codes of reserved words beyond those that procedures know.
inline constexpr int kOperatorTo = 33;
inline constexpr int kOperatorAll = 35;

/// What is wrong at a place of the text, and what to do.
struct SyntaxProblem {
  size_t position = 0;  ///< byte offset in the whole text
  std::string what;
  std::string suggestion = {};  ///< the nearest valid word, or empty
};

/// The tokens of one command. Token positions are byte offsets in the whole text, so that messages
/// can show the line.
class CommandTokens {
 public:
  /// The command as written, without surrounding blanks and comments before it.
  const std::string& source() const { return source_; }
  /// The text that the command stands in.
  const std::string& wholeText() const { return *wholeText_; }
  const std::vector<TokenInfoObj>& tokens() const { return tokens_; }
  /// Where it begins: the place, and the number of its line.
  size_t startPosition() const { return start_; }
  size_t startLine() const { return startLine_; }
  /// Where the command ends, its period not counted; the place for "something is missing".
  size_t endPosition() const { return end_; }
  /// What kept the text from being cut into tokens, if anything did.
  const std::optional<SyntaxProblem>& problem() const { return problem_; }

 private:
  friend class CommandScanner;
  std::string source_;
  /// Shared by all commands of the text.
  std::shared_ptr<const std::string> wholeText_ = std::make_shared<const std::string>();
  std::vector<TokenInfoObj> tokens_;
  size_t start_ = 0;
  size_t startLine_ = 1;
  size_t end_ = 0;
  std::optional<SyntaxProblem> problem_;
};

/// Cuts a text into its commands, in order. A period at the end of a line, or the end of the text,
/// ends a command; # starts a comment. A command that cannot be cut into tokens carries its
/// problem.
std::vector<CommandTokens> splitCommands(const std::string& text);

/// True for the token of that symbol, one of / = ( ) and the comma.
bool isSymbol(const TokenInfoObj& token, char symbol);

/// Where a text begins: after its byte order mark when it has one.
size_t textStart(const std::string& text);

/// A variable's name as a command has to write it: in double quotes when it is not an identifier or
/// is a reserved word.
std::string writtenName(const std::string& name);

}  // namespace workbench
