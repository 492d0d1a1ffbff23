/// Command text of tests, well formed by assumption, as tokens and as a tree.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/parser.h"

namespace recording {

/// Tokens of the whole text, without the final full stop. Throws std::logic_error for text that no
/// token starts with.
std::vector<TokenInfoObj> tokensOf(const std::string& text);

/// A parameter: its tokens, or its qualifier with the tokens in the parentheses.
struct ParamTree {
  std::string name;  ///< upper case; empty for the unnamed list
  std::vector<TokenInfoObj> tokens;
  bool hasParentheses = false;
  std::vector<TokenInfoObj> inParentheses;
};

struct SubComTree {
  std::string name;  ///< upper case
  ParamTree unnamed;
  std::vector<ParamTree> params;
};

/// Throws std::logic_error for text that is not a command.
std::vector<SubComTree> parseCommand(const std::vector<TokenInfoObj>& tokens);

/// The tokens as a transcript shows them, "[a WITH 1 "x"]".
std::string describe(const std::vector<TokenInfoObj>& tokens);

}  // namespace recording
