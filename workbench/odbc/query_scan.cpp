#include "workbench/odbc/query_scan.h"

#include <fmt/format.h>

#include <algorithm>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kNone = std::string_view::npos;

[[noreturn]] void refuse(std::string_view what) {
  throw DataError(fmt::format("--query must be one SELECT statement; this {}.", what));
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isOfWord(char c) {
  return isLetter(c) || (c >= '0' && c <= '9') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

class Scanner {
 public:
  Scanner(std::string_view query, const ScanRules& rules) : query_(query), rules_(rules) {}

  /// Where the statement ends.
  size_t end();

 private:
  char at(size_t place) const { return place < query_.size() ? query_[place] : '\0'; }
  std::string_view rest() const { return query_.substr(at_); }
  bool skipComment();
  bool skipQuotes();
  void skipQuoted(char quote, bool backslashes);
  bool skipDollarQuotes();
  void skipLine();
  void skipBlockComment();
  void takeWord();
  void take(char sign);

  std::string_view query_;
  const ScanRules& rules_;
  size_t at_ = 0;
  size_t end_ = kNone;  // of the statement: where a semicolon stands
  size_t last_ = 0;     // after the last thing that is neither blank nor comment
  int depth_ = 0;
  bool begun_ = false;
};

void Scanner::skipLine() { at_ = std::min(query_.find_first_of("\r\n", at_), query_.size()); }

void Scanner::skipBlockComment() {
  const char first = at(at_ + 2);
  if ((rules_.runningComments || rules_.strict) && (first == '!' || first == 'M')) {
    refuse("holds a comment that the server may run (/*!)");
  }
  int depth = 0;
  while (at_ < query_.size()) {
    if (rest().starts_with("/*")) {
      if (depth > 0 && rules_.strict) refuse("holds a comment in a comment");
      if (depth == 0 || rules_.nestedComments) ++depth;
      at_ += 2;
    } else if (rest().starts_with("*/")) {
      at_ += 2;
      if (--depth == 0) return;
    } else {
      ++at_;
    }
  }
  refuse("holds a comment that is not closed");
}

bool Scanner::skipComment() {
  if (rest().starts_with("/*")) {
    skipBlockComment();
    return true;
  }
  if (rest().starts_with("--")) {
    const bool isBlankBehind = at_ + 2 >= query_.size() || isBlank(at(at_ + 2));
    if (!isBlankBehind && rules_.strict) refuse("holds two dashes without a blank behind them");
    if (!isBlankBehind && rules_.dashesNeedBlank) return false;
    skipLine();
    return true;
  }
  if (at(at_) == '#' && rules_.strict) refuse("holds a #");
  if (at(at_) != '#' || !rules_.hashComments) return false;
  skipLine();
  return true;
}

void Scanner::skipQuoted(char quote, bool backslashes) {
  for (++at_; at_ < query_.size(); ++at_) {
    if (query_[at_] == '\\' && rules_.strict) refuse("holds a backslash in quotes");
    if (query_[at_] == '\\' && backslashes) {
      ++at_;
    } else if (query_[at_] == quote) {
      ++at_;
      if (at(at_) != quote) return;  // else a doubled one, which stands for itself
    }
  }
  refuse("holds a quote that is not closed");
}

bool Scanner::skipDollarQuotes() {
  if (at(at_) != '$') return false;
  if (rules_.strict) refuse("holds a $");
  size_t tagEnd = at_ + 1;
  while (isOfWord(at(tagEnd))) ++tagEnd;
  const bool insideWord = at_ > 0 && (isOfWord(at(at_ - 1)) || at(at_ - 1) == '$');
  if (!rules_.dollarQuotes || at(tagEnd) != '$' || insideWord ||
      (at(at_ + 1) >= '0' && at(at_ + 1) <= '9')) {
    return false;
  }
  const std::string_view tag = query_.substr(at_, tagEnd + 1 - at_);
  const size_t close = query_.find(tag, tagEnd + 1);
  if (close == kNone) refuse("holds a quote that is not closed");
  at_ = close + tag.size();
  return true;
}

bool Scanner::skipQuotes() {
  const char sign = at(at_);
  if (sign != '\'' && sign != '"' && sign != '`') return skipDollarQuotes();
  if (sign == '`' && rules_.strict) refuse("holds a `");
  bool backslashes = rules_.backslashes == Backslashes::kInAll && sign != '`';
  if (rules_.backslashes == Backslashes::kAfterE && sign == '\'' && at_ > 0) {
    const bool isPrefix = at_ < 2 || !isOfWord(at(at_ - 2));
    backslashes = isPrefix && (at(at_ - 1) == 'E' || at(at_ - 1) == 'e');
  }
  skipQuoted(sign, backslashes);
  return true;
}

/// The first word must be one that selects.
void Scanner::takeWord() {
  const size_t start = at_;
  while (isOfWord(at(at_))) ++at_;
  if (begun_) return;
  begun_ = true;
  std::string word(query_.substr(start, at_ - start));
  std::transform(word.begin(), word.end(), word.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  if (word != "SELECT" && word != "WITH" && word != "VALUES" && word != "TABLE") {
    refuse(fmt::format("begins with {}", word));
  }
}

void Scanner::take(char sign) {
  if (isOfWord(sign)) return takeWord();
  ++at_;
  if (sign == '(') ++depth_;
  if (sign == ')' && --depth_ < 0) refuse("closes a bracket that is not open");
}

size_t Scanner::end() {
  while (at_ < query_.size()) {
    const char sign = at(at_);
    if (isBlank(sign)) {
      ++at_;
      continue;
    }
    if (skipComment()) continue;
    if (sign == ';') {
      if (end_ == kNone) end_ = at_;
      ++at_;
      continue;
    }
    if (end_ != kNone) refuse("is more than one statement");
    if (!begun_ && sign != '(' && !isLetter(sign)) refuse("begins with no word");
    if (!skipQuotes()) take(sign);
    last_ = at_;
  }
  if (!begun_) refuse("is none");
  if (depth_ > 0) refuse("leaves a bracket open");
  return last_;
}

}  // namespace

std::string scannedQuery(std::string_view query, const ScanRules& rules) {
  if (query.find('\0') != kNone) refuse("holds a NUL character");
  return std::string(query.substr(0, Scanner(query, rules).end()));
}

}  // namespace workbench
