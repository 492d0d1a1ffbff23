#include "workbench/parser/command_text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cmath>
#include <cstdlib>

#include "workbench/engine/text_fold.h"

namespace workbench {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

int operatorCode(const std::string& word) {
  const std::string upper = upperCase(word);
  if (upper == "WITH") return kOperatorWith;
  if (upper == "BY") return kOperatorBy;
  if (upper == "TO") return kOperatorTo;
  return upper == "ALL" ? kOperatorAll : 0;
}

}  // namespace

class CommandScanner {
 public:
  explicit CommandScanner(const std::string& text) : text_(text) {
    if (text_.compare(0, 3, "\xEF\xBB\xBF") == 0) at_ = 3;
  }

  std::vector<CommandTokens> scanAll() {
    std::vector<CommandTokens> commands;
    for (;;) {
      skipBlanks();
      if (at_ >= text_.size()) return commands;
      commands.push_back(scanCommand());
    }
  }

 private:
  /// Blanks, comments and terminators without a command before them.
  void skipBlanks() {
    while (at_ < text_.size()) {
      if (isBlank(text_[at_])) {
        ++at_;
      } else if (text_[at_] == '#') {
        skipLine();
      } else if (text_[at_] == '.' && endsLine(at_ + 1)) {
        ++at_;
      } else {
        return;
      }
    }
  }

  void skipLine() {
    while (at_ < text_.size() && text_[at_] != '\n') ++at_;
  }

  /// Nothing but blanks and a comment up to the end of the line.
  bool endsLine(size_t at) const {
    while (at < text_.size() && text_[at] != '\n') {
      if (text_[at] == '#') return true;
      if (!isBlank(text_[at])) return false;
      ++at;
    }
    return true;
  }

  CommandTokens scanCommand() {
    CommandTokens command;
    command.wholeText_ = text_;
    const size_t start = at_;
    size_t end = at_;
    while (at_ < text_.size()) {
      if (isBlank(text_[at_])) {
        ++at_;
      } else if (text_[at_] == '#') {
        skipLine();
      } else if (text_[at_] == '.' && endsLine(at_ + 1)) {
        end = ++at_;
        break;
      } else if (!scanToken(command)) {
        skipToTerminator();
        end = at_;
        break;
      } else {
        end = at_;
      }
    }
    command.end_ = end;
    command.source_ = text_.substr(start, end - start);
    return command;
  }

  /// After an error: on to what ends the command.
  void skipToTerminator() {
    while (at_ < text_.size() && !(text_[at_] == '.' && endsLine(at_ + 1))) ++at_;
    if (at_ < text_.size()) ++at_;
  }

  bool fail(CommandTokens& command, size_t position, const std::string& what) {
    command.problem_ = SyntaxProblem{position, what, ""};
    return false;
  }

  void add(CommandTokens& command, TokenInfoObj::Kind kind, std::string text, size_t start,
           double number = 0.0, int code = 0) {
    command.tokens_.emplace_back(kind, std::move(text), number, code, start);
  }

  bool scanToken(CommandTokens& command) {
    const char c = text_[at_];
    if (c == '"' || c == '\'') return scanString(command);
    if (startsNumber()) return scanNumber(command);
    const size_t start = at_;
    if (size_t next = at_; takeNameCharacter(next, true)) return scanWord(command);
    if (std::string("/=(),").find(c) != std::string::npos) {
      ++at_;
      add(command, TokenInfoObj::Kind::kSymbol, std::string(1, c), start);
      return true;
    }
    return fail(command, start, strangeCharacter());
  }

  std::string strangeCharacter() const {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text_.data());
    auto next = static_cast<int32_t>(at_);
    UChar32 character = 0;
    U8_NEXT(bytes, next, static_cast<int32_t>(text_.size()), character);
    if (character < 0) return "The command is not valid UTF-8 here.";
    if (character < 0x20 || character == 0x7F) return "A control character cannot stand here.";
    return "\"" + text_.substr(at_, static_cast<size_t>(next) - at_) +
           "\" cannot stand here. Names that are no identifiers go in double quotes.";
  }

  bool scanString(CommandTokens& command) {
    const char quote = text_[at_];
    const size_t start = at_++;
    std::string content;
    for (;; ++at_) {
      if (at_ >= text_.size() || text_[at_] == '\n') {
        at_ = start + 1;
        return fail(command, start,
                    std::string("The quote ") + quote + " is not closed on its line.");
      }
      if (text_[at_] != quote) {
        content += text_[at_];
      } else if (at_ + 1 < text_.size() && text_[at_ + 1] == quote) {
        content += quote;
        ++at_;
      } else {
        break;
      }
    }
    ++at_;
    add(command, TokenInfoObj::Kind::kString, std::move(content), start);
    return true;
  }

  bool startsNumber() const {
    size_t at = at_;
    if (text_[at] == '+' || text_[at] == '-') ++at;
    if (at < text_.size() && text_[at] == '.') ++at;
    return at < text_.size() && isDigit(text_[at]);
  }

  void takeDigits() {
    while (at_ < text_.size() && isDigit(text_[at_])) ++at_;
  }

  bool scanNumber(CommandTokens& command) {
    const size_t start = at_;
    if (!isDigit(text_[at_]) && text_[at_] != '.') ++at_;
    takeDigits();
    // A period that ends the line ends the command, not the number.
    if (at_ < text_.size() && text_[at_] == '.' && !endsLine(at_ + 1)) {
      ++at_;
      takeDigits();
    }
    if (at_ < text_.size() && (text_[at_] == 'e' || text_[at_] == 'E')) takeExponent();
    if (size_t next = at_; takeNameCharacter(next, true)) {
      return fail(command, start,
                  "A number cannot run into a word; a name that begins with a digit goes in double "
                  "quotes.");
    }
    const std::string text = text_.substr(start, at_ - start);
    const double number = std::strtod(text.c_str(), nullptr);
    if (!std::isfinite(number))
      return fail(command, start, "The number " + text + " is too large.");
    add(command, TokenInfoObj::Kind::kNumber, text, start, number == 0.0 ? 0.0 : number);
    return true;
  }

  void takeExponent() {
    size_t at = at_ + 1;
    if (at < text_.size() && (text_[at] == '+' || text_[at] == '-')) ++at;
    if (at >= text_.size() || !isDigit(text_[at])) return;
    at_ = at;
    takeDigits();
  }

  /// Letters of any script, _ $ @ anywhere; digits, combining marks and . after the first place.
  bool takeNameCharacter(size_t& at, bool first) const {
    if (at >= text_.size()) return false;
    auto next = static_cast<int32_t>(at);
    UChar32 character = 0;
    U8_NEXT(reinterpret_cast<const uint8_t*>(text_.data()), next,
            static_cast<int32_t>(text_.size()), character);
    if (character < 0) return false;
    const bool letter =
        u_isalpha(character) || character == '_' || character == '$' || character == '@';
    const bool later =
        u_isdigit(character) || character == '.' || (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
    if (!letter && (first || !later)) return false;
    if (character == '.' && endsLine(at + 1)) return false;
    at = static_cast<size_t>(next);
    return true;
  }

  bool scanWord(CommandTokens& command) {
    const size_t start = at_;
    takeNameCharacter(at_, true);
    while (takeNameCharacter(at_, false)) {
    }
    std::string word = text_.substr(start, at_ - start);
    const int code = operatorCode(word);
    add(command, TokenInfoObj::Kind::kWord, std::move(word), start, 0.0, code);
    return true;
  }

  const std::string& text_;
  size_t at_ = 0;
};

std::vector<CommandTokens> splitCommands(const std::string& text) {
  return CommandScanner(text).scanAll();
}

}  // namespace workbench

std::string TokenInfoObj::getUpText() const { return workbench::upperCase(text_); }
