/// Whether a query of a user is one statement that can stand in brackets.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// Where a backslash takes the next character's meaning away.
enum class Backslashes { kNowhere, kAfterE, kInAll };

/// What a server takes for quotes and comments, beyond the SQL that all have in common: '...' and
/// "..." with quotes doubled inside, `...`, comments from -- to the end of the line or between /*
/// and */.
struct ScanRules {
  bool dollarQuotes = false;     ///< $tag$...$tag$
  bool nestedComments = false;   ///< of the second kind
  bool hashComments = false;     ///< # to the end of the line
  bool dashesNeedBlank = false;  ///< a comment begins with dashes and a blank only
  bool runningComments = false;  ///< what stands in /*! is run
  Backslashes backslashes = Backslashes::kNowhere;
  bool strict = false;  ///< nothing is known: what servers read differently is refused

  static ScanRules unknown() { return {.strict = true}; }
};

/// The query without the semicolon and blanks after it. Throws DataError that says what is wrong
/// when it is not one SELECT statement by these rules: it holds a semicolon, a bracket, quote or
/// comment that is not closed, a bracket that closes none, or begins with another word than SELECT,
/// WITH, VALUES or TABLE.
std::string scannedQuery(std::string_view query, const ScanRules& rules);

}  // namespace workbench
