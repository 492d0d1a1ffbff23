/// What servers do differently.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/odbc/connection_text.h"
#include "workbench/odbc/plain_sql.h"
#include "workbench/odbc/query_scan.h"
#include "workbench/odbc/server_column.h"

namespace workbench {

/// Where the types of columns are looked up, beyond what the driver tells.
enum class TypeSource { kDriver, kPostgresCatalogue, kInformationSchema };

/// How rows come when there may be many of them.
enum class ManyRows {
  kAsOne,     ///< by one statement, whose rows the driver hands on as they come
  kByCursor,  ///< portion after portion, so that the driver never holds them all
  kInParts    ///< by several statements for the same reason, where clients have no cursors
};

/// What is known of one kind of server; the rest is plain SQL. A server that is not known by name
/// gets nothing else, and its texts are never grouped there: its collation may put different ones
/// together.
struct Dialect {
  /// How the names begin that such servers tell, in lower case.
  std::vector<std::string_view> servers = {};
  /// Statements before all others. With the last one a read-only transaction has begun.
  std::vector<std::string_view> session = {};
  /// The statement that makes a driver of bytes take UTF-8; empty: it takes nothing else. Nothing
  /// when that is not known.
  std::optional<std::string_view> bytesAsUtf8 = {};
  std::string_view files = {};  ///< a statement whose rows end with a file that is read, if any
  TypeSource types = TypeSource::kDriver;
  bool marked = false;  ///< values begin with a ValueMark
  ManyRows manyRows = ManyRows::kAsOne;
  bool limit = false;                                     ///< LIMIT is understood
  const char* asDouble = "CAST({} AS DOUBLE PRECISION)";  ///< a number in binary, as fmt has it
  ScanRules scan = ScanRules::unknown();

  /// The column's kind, after the driver's types were looked at.
  void (*settle)(ServerColumn& column, const ResultColumn& told) = plain_sql::settle;
  /// What to select so that the value comes in the form of its kind; `asText`: as a plain text.
  std::string (*shown)(const ServerColumn& column, bool asText) = plain_sql::shown;
  /// What to group by so that values that differ, byte for byte in texts, stay apart; empty when
  /// there is nothing.
  std::string (*grouped)(const ServerColumn& column) = plain_sql::grouped;
  /// Of the cases of a group, in which what was `shown` is the same, one value.
  std::string (*anyOf)(const ServerColumn& column, const std::string& shown) = plain_sql::anyOf;
  /// Of a number above 0 the largest whole number that is not larger.
  std::string (*floor)(const std::string& number) = plain_sql::floor;
  std::string (*sum)(const std::string& number) = plain_sql::sum;
  /// A condition: the program would not take the weight for what a double of the server is. Empty
  /// when it always does.
  std::string (*oddWeight)(const ServerColumn& column) = plain_sql::oddWeight;
  /// What else a weight that is large enough has to be: " AND ...", or nothing.
  std::string (*soundWeight)(const ServerColumn& column) = plain_sql::soundWeight;
  /// A whole number from 0 on that the value alone decides, or a null; for ManyRows::kInParts.
  std::string (*hash)(const std::string& value) = nullptr;
};

/// By the name that the server tells (SQL_DBMS_NAME).
const Dialect& dialectOf(const std::string& server);

/// What is known of a driver before it is loaded, by words of its name or file.
struct DriverTraits {
  /// How a connection begins that nothing may be lost of.
  DriverText text = DriverText::kUnicode;
  /// Attributes that a connection gets unless it has them: what keeps the driver from making files,
  /// and from holding a whole result in memory.
  ConnectionAttributes attributes = {};
  /// Attributes that it always gets: what keeps the driver from losing characters.
  ConnectionAttributes always = {};
};
DriverTraits driverTraits(const std::string& about);

}  // namespace workbench
