/// Columns of a server's tables, and their values as the program holds them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/odbc/connection.h"

namespace workbench {

/// What the values of a column are. They all come as texts, numbers in memory apart.
enum class ServerKind : uint8_t {
  kNumber,   ///< whole, decimal or floating
  kBoolean,  ///< 0 and 1, or false and true
  kZeroOne,  ///< numbers, which are booleans when all of them are 0 or 1
  kDate,     ///< texts, as the rest down to kText
  kTime,
  kDateTime,
  kZonedDateTime,  ///< in UTC, with or without saying so
  kText,
  kEnumeration,  ///< one of the texts in `categories`
  kMixed,        ///< each value tells by its first character what it is (ValueMark)
  kUnusable      ///< bytes, intervals, arrays
};

/// How a value of a column of kMixed begins, by what the server holds there.
enum class ValueMark : char { kNumber = 'n', kText = 't', kBytes = 'b', kNul = '0' };

struct ServerColumn {
  std::string name;
  std::string quoted;  ///< the name in a statement
  ServerKind kind = ServerKind::kUnusable;
  bool floating = false;  ///< of numbers: in binary
  bool inMemory = false;  ///< fetched as a double
  int digits = 0;         ///< of a decimal number; 0: unknown
  int scale = 0;          ///< digits after the point
  std::string typeName;   ///< the server's
  bool plainText = true;  ///< of texts: of a type that can be grouped as it is
  bool moments = false;   ///< of kMixed: texts are dates and times where they spell them
  std::vector<std::string> categories;
};

/// The column of what a driver tells, by the types of ODBC.
ServerColumn columnByOdbcType(const ResultColumn& told);

/// A number, or what is wrong with the text.
struct ServerNumber {
  double value = 0.0;
  std::string_view flaw = {};  ///< the end of a sentence that begins with the value
};

/// A value of a column that is a number in the program: dates and times in seconds since
/// 1970-01-01 or midnight, booleans 0 and 1, enumerations from 1. A number is exact or refused: a
/// decimal one must come back from the double when it is rounded to its own digits.
ServerNumber serverNumber(const ServerColumn& column, std::string_view text);

}  // namespace workbench
