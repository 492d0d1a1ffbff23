#include "tests/recording/command_text.h"

#include <array>
#include <cctype>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tests/recording/transcript.h"

namespace recording {
namespace {

using Kind = TokenInfoObj::Kind;

bool isWordLetter(char letter) {
  const auto byte = static_cast<unsigned char>(letter);
  return std::isalnum(byte) != 0 || letter == '_' || letter == '$' || letter == '@' ||
         letter == '#' || letter == '.' || byte >= 0x80;
}

bool startsNumber(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  if (!text.empty() && text.front() == '.') text.remove_prefix(1);
  return !text.empty() && std::isdigit(static_cast<unsigned char>(text.front())) != 0;
}

int operatorCodeOf(const TokenInfoObj& word) {
  constexpr std::array<std::pair<std::string_view, int>, 4> kReserved{
      {{"WITH", kOperatorWith}, {"BY", kOperatorBy}, {"TO", 1}, {"ALL", 2}}};
  for (const auto& [text, code] : kReserved) {
    if (word.getUpText() == text) return code;
  }
  return 0;
}

TokenInfoObj wordAt(const std::string& text, size_t& at) {
  const size_t begin = at;
  while (at < text.size() && isWordLetter(text[at])) ++at;
  const std::string word = text.substr(begin, at - begin);
  const TokenInfoObj plain(Kind::kWord, word, 0, 0, begin);
  return TokenInfoObj(Kind::kWord, word, 0, operatorCodeOf(plain), begin);
}

TokenInfoObj numberAt(const std::string& text, size_t& at) {
  const size_t begin = at;
  char* end = nullptr;
  const double value = std::strtod(text.c_str() + begin, &end);
  at = static_cast<size_t>(end - text.c_str());
  return TokenInfoObj(Kind::kNumber, text.substr(begin, at - begin), value, 0, begin);
}

TokenInfoObj stringAt(const std::string& text, size_t& at) {
  const size_t begin = at;
  const char quote = text[at++];
  std::string content;
  while (at < text.size()) {
    if (text[at] == quote) {
      if (at + 1 >= text.size() || text[at + 1] != quote) break;
      ++at;
    }
    content += text[at++];
  }
  if (at >= text.size()) throw std::logic_error("open quote in a test's command");
  ++at;
  return TokenInfoObj(Kind::kString, content, 0, 0, begin);
}

bool isSymbol(const std::vector<TokenInfoObj>& tokens, size_t at, std::string_view symbol) {
  return at < tokens.size() && tokens[at].kind() == Kind::kSymbol && tokens[at].getText() == symbol;
}

bool startsParam(const std::vector<TokenInfoObj>& tokens, size_t at) {
  return at < tokens.size() && tokens[at].kind() == Kind::kWord && isSymbol(tokens, at + 1, "=");
}

/// A list runs up to the next parameter or subcommand; commas are left out.
std::vector<TokenInfoObj> listAt(const std::vector<TokenInfoObj>& tokens, size_t& at) {
  std::vector<TokenInfoObj> list;
  for (; at < tokens.size() && !isSymbol(tokens, at, "/") && !startsParam(tokens, at); ++at) {
    if (!isSymbol(tokens, at, ",")) list.push_back(tokens[at]);
  }
  return list;
}

ParamTree paramAt(const std::vector<TokenInfoObj>& tokens, size_t& at) {
  ParamTree param;
  param.name = tokens[at].getUpText();
  at += 2;
  std::vector<TokenInfoObj> list = listAt(tokens, at);
  if (list.size() > 2 && isSymbol(list, 1, "(") && isSymbol(list, list.size() - 1, ")")) {
    param.hasParentheses = true;
    param.inParentheses.assign(list.begin() + 2, list.end() - 1);
    list.erase(list.begin() + 1, list.end());
  }
  param.tokens = std::move(list);
  return param;
}

SubComTree subcommandAt(const std::vector<TokenInfoObj>& tokens, size_t& at) {
  if (at >= tokens.size() || tokens[at].kind() != Kind::kWord) {
    throw std::logic_error("a test's command needs a subcommand after the slash");
  }
  SubComTree subcommand;
  subcommand.name = tokens[at++].getUpText();
  subcommand.unnamed.tokens = listAt(tokens, at);
  while (startsParam(tokens, at)) subcommand.params.push_back(paramAt(tokens, at));
  return subcommand;
}

}  // namespace

std::vector<TokenInfoObj> tokensOf(const std::string& command) {
  std::string text = command;
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) {
    text.pop_back();
  }
  if (!text.empty() && text.back() == '.') text.pop_back();
  std::vector<TokenInfoObj> tokens;
  size_t at = 0;
  while (at < text.size()) {
    const char letter = text[at];
    if (std::isspace(static_cast<unsigned char>(letter)) != 0) {
      ++at;
    } else if (startsNumber(std::string_view(text).substr(at))) {
      tokens.push_back(numberAt(text, at));
    } else if (letter == '"' || letter == '\'') {
      tokens.push_back(stringAt(text, at));
    } else if (std::string_view("/=(),").find(letter) != std::string_view::npos) {
      tokens.emplace_back(Kind::kSymbol, std::string(1, letter), 0, 0, at++);
    } else if (isWordLetter(letter)) {
      tokens.push_back(wordAt(text, at));
    } else {
      throw std::logic_error("no token starts with '" + std::string(1, letter) + "'");
    }
  }
  return tokens;
}

std::vector<SubComTree> parseCommand(const std::vector<TokenInfoObj>& tokens) {
  if (tokens.empty() || tokens[0].getUpText() != "PROPORTIONS") {
    throw std::logic_error("a test's command starts with PROPORTIONS");
  }
  std::vector<SubComTree> subcommands;
  size_t at = 1;
  while (at < tokens.size()) {
    if (isSymbol(tokens, at, "/")) ++at;
    subcommands.push_back(subcommandAt(tokens, at));
  }
  return subcommands;
}

std::string describe(const std::vector<TokenInfoObj>& tokens) {
  std::string text = "[";
  for (const TokenInfoObj& token : tokens) {
    if (text.size() > 1) text += ' ';
    text += token.kind() == Kind::kString ? shown(token.getText()) : token.getText();
  }
  return text + "]";
}

}  // namespace recording
