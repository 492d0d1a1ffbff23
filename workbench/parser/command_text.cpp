#include "workbench/parser/command_text.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <charconv>

#include "workbench/parser/syntax_error.h"
#include "workbench/text/text_fold.h"
#include "workbench/text/utf8.h"

namespace workbench {
namespace {

/// Bytes of the longest word or string.
constexpr size_t kLongestToken = 65535;

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

int operatorCode(const std::string& word) {
  if (word.size() > 4) return 0;
  const std::string upper = upperCase(word);
  if (upper == "WITH") return kOperatorWith;
  if (upper == "BY") return kOperatorBy;
  if (upper == "TO") return kOperatorTo;
  return upper == "ALL" ? kOperatorAll : 0;
}

/// What is wrong with a character that begins no token.
std::string strangeCharacter(const std::string& text, size_t at) {
  size_t next = at;
  const UChar32 character = nextCharacter(text, next);
  if (character < 0) return "The command is not valid UTF-8 here.";
  if (character == '.') return "A period ends the command only at the end of a line.";
  if (u_hasBinaryProperty(character, UCHAR_QUOTATION_MARK) != 0) {
    return "Quotes are written as straight ones, \" or '.";
  }
  if (u_isUWhiteSpace(character) != 0) return "This is an unusual kind of blank; use a plain one.";
  if (u_charType(character) == U_CONTROL_CHAR) return "A control character cannot stand here.";
  return shortQuoted(text.substr(at, next - at)) +
         " cannot stand here. Names with other characters than letters, digits and _ . $ @ go in "
         "double quotes.";
}

}  // namespace

class CommandScanner {
 public:
  explicit CommandScanner(const std::string& text)
      : shared_(std::make_shared<const std::string>(text)), text_(*shared_), at_(textStart(text)) {}

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
      if (isBlank(text_[at_]) || (text_[at_] == '.' && endsLine(at_ + 1))) {
        ++at_;
      } else if (text_[at_] == '#') {
        skipLine();
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
    command.wholeText_ = shared_;
    const size_t start = at_;
    line_ += static_cast<size_t>(std::count(text_.begin() + static_cast<ptrdiff_t>(counted_),
                                            text_.begin() + static_cast<ptrdiff_t>(start), '\n'));
    counted_ = start;
    command.start_ = start;
    command.startLine_ = line_;
    size_t end = at_;
    while (at_ < text_.size()) {
      if (isBlank(text_[at_])) {
        ++at_;
      } else if (text_[at_] == '#') {
        skipLine();
      } else if (text_[at_] == '.' && endsLine(at_ + 1)) {
        command.end_ = at_;
        end = ++at_;
        break;
      } else if (!scanToken(command)) {
        end = command.end_ = skipToTerminator();
        break;
      } else {
        end = command.end_ = at_;
      }
    }
    command.source_ = text_.substr(start, end - start);
    if (!command.problem_) checkEncoding(command, start);
    return command;
  }

  /// After an error: on to what ends the command. Gives the end of what is not blank.
  size_t skipToTerminator() {
    size_t end = at_;
    while (at_ < text_.size()) {
      if (text_[at_] == '#') {
        skipLine();
      } else if (text_[at_] == '.' && endsLine(at_ + 1)) {
        return ++at_;
      } else if (!isBlank(text_[at_++])) {
        end = at_;
      }
    }
    return end;
  }

  /// Strings and comments may hold anything that is UTF-8.
  void checkEncoding(CommandTokens& command, size_t start) {
    const size_t end = start + command.source_.size();
    for (size_t at = start, next = start; at < end; at = next) {
      if (nextCharacter(text_, next) >= 0) continue;
      fail(command, at, strangeCharacter(text_, at));
      return;
    }
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
    return fail(command, start, strangeCharacter(text_, start));
  }

  bool scanString(CommandTokens& command) {
    const char quote = text_[at_];
    const size_t start = at_++;
    std::string content;
    for (;; ++at_) {
      if (at_ >= text_.size() || text_[at_] == '\n') {
        goToLastOfLine(start);
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
    if (content.size() > kLongestToken) return fail(command, start, "This string is too long.");
    add(command, TokenInfoObj::Kind::kString, std::move(content), start);
    return true;
  }

  /// An open quote hides what its line holds, but for a period at the end.
  void goToLastOfLine(size_t start) {
    while (at_ > start + 1 && isBlank(text_[at_ - 1])) --at_;
    if (at_ > start + 1) --at_;
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
    if (runsOn()) {
      return fail(command, start,
                  "A number cannot run into what follows it; put a blank between. Dates, and names "
                  "that begin with a digit, go in quotes.");
    }
    const std::string text = text_.substr(start, at_ - start);
    const char* const first = text.data() + (text[0] == '+' ? 1 : 0);
    double number = 0.0;
    if (std::from_chars(first, text.data() + text.size(), number).ec != std::errc()) {
      return fail(command, start, shortQuoted(text) + " is beyond the range of numbers.");
    }
    add(command, TokenInfoObj::Kind::kNumber, text, start, number == 0.0 ? 0.0 : number);
    return true;
  }

  /// True when a number is followed by what is neither a blank nor a symbol.
  bool runsOn() const {
    if (at_ >= text_.size()) return false;
    const char c = text_[at_];
    size_t next = at_;
    return takeNameCharacter(next, true) || c == '+' || c == '-' ||
           (c == '.' && !endsLine(at_ + 1));
  }

  void takeExponent() {
    size_t at = at_ + 1;
    if (at < text_.size() && (text_[at] == '+' || text_[at] == '-')) ++at;
    if (at >= text_.size() || !isDigit(text_[at])) return;
    at_ = at;
    takeDigits();
  }

  /// Letters of any script, _ $ @ anywhere; digits, marks, joiners and . after the first place.
  bool takeNameCharacter(size_t& at, bool first) const {
    if (at >= text_.size()) return false;
    size_t next = at;
    const UChar32 character = nextCharacter(text_, next);
    if (character < 0) return false;
    const bool letter =
        u_isalpha(character) || character == '_' || character == '$' || character == '@';
    const bool later = u_isdigit(character) || character == '.' ||
                       u_hasBinaryProperty(character, UCHAR_JOIN_CONTROL) != 0 ||
                       (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
    if (!letter && (first || !later)) return false;
    if (character == '.' && endsLine(at + 1)) return false;
    at = next;
    return true;
  }

  bool scanWord(CommandTokens& command) {
    const size_t start = at_;
    takeNameCharacter(at_, true);
    while (takeNameCharacter(at_, false)) {
    }
    if (at_ - start > kLongestToken) return fail(command, start, "This word is too long.");
    std::string word = text_.substr(start, at_ - start);
    const int code = operatorCode(word);
    add(command, TokenInfoObj::Kind::kWord, std::move(word), start, 0.0, code);
    return true;
  }

  const std::shared_ptr<const std::string> shared_;
  const std::string& text_;
  size_t at_;
  size_t line_ = 1;  // of the place up to which lines were counted
  size_t counted_ = 0;
};

std::vector<CommandTokens> splitCommands(const std::string& text) {
  return CommandScanner(text).scanAll();
}

bool isSymbol(const TokenInfoObj& token, char symbol) {
  return token.kind() == TokenInfoObj::Kind::kSymbol && token.getText()[0] == symbol;
}

size_t textStart(const std::string& text) {
  return text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
}

std::string writtenName(const std::string& name) {
  const std::vector<CommandTokens> parsed = splitCommands(name);
  if (parsed.size() == 1 && !parsed[0].problem() && parsed[0].tokens().size() == 1) {
    const TokenInfoObj& token = parsed[0].tokens()[0];
    if (token.kind() == TokenInfoObj::Kind::kWord && token.getText() == name &&
        !token.isReservedWord()) {
      return name;
    }
  }
  std::string quoted = "\"";
  for (const char c : name) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

}  // namespace workbench

std::string TokenInfoObj::getUpText() const { return workbench::upperCase(text_); }
