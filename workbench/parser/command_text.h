/// Command text: cut into commands, and commands into tokens.
#pragma once

#include <cstddef>
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
  std::string suggestion;  ///< the nearest valid word, or empty
};

/// The tokens of one command. Token positions are byte offsets in the whole text, so that messages
/// can show the line.
class CommandTokens {
 public:
  /// The command as written, without surrounding blanks and comments before it.
  const std::string& source() const { return source_; }
  const std::string& wholeText() const { return wholeText_; }
  const std::vector<TokenInfoObj>& tokens() const { return tokens_; }
  /// Where the command ends; the place for "something is missing".
  size_t endPosition() const { return end_; }
  /// What kept the text from being cut into tokens, if anything did.
  const std::optional<SyntaxProblem>& problem() const { return problem_; }

 private:
  friend class CommandScanner;
  std::string source_;
  std::string wholeText_;
  std::vector<TokenInfoObj> tokens_;
  size_t end_ = 0;
  std::optional<SyntaxProblem> problem_;
};

/// Cuts a text into its commands, in order. A period at the end of a line, or the end of the text,
/// ends a command; # starts a comment. A command that cannot be cut into tokens carries its
/// problem.
std::vector<CommandTokens> splitCommands(const std::string& text);

}  // namespace workbench
