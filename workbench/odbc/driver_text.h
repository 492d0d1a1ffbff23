/// Texts between the program, which has them in UTF-8, and a driver.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/odbc/odbc_library.h"

namespace workbench {

/// How a driver takes texts and gives them. The driver manager makes bytes of UTF-16, and UTF-16 of
/// bytes, where a driver has functions for the other only; what no byte holds is lost on that way
/// without a word. So each driver gets its own form.
enum class DriverText {
  kUnicode,  ///< UTF-16
  kBytes     ///< UTF-8, which the driver manager passes on as it is
};

/// Whether the connection's driver gets texts in UTF-16 as they are. To be asked of drivers of
/// DriverText::kUnicode only; false, too, when the driver cannot tell.
bool passesUnicode(SQLHDBC connection);

bool isAscii(std::string_view text);

/// Calls of the driver manager, with texts in the driver's form.
SQLRETURN driverConnect(DriverText form, SQLHDBC connection, const std::string& text);
SQLRETURN execute(DriverText form, SQLHSTMT statement, const std::string& sql);

/// What the driver tells; bytes that are no text become U+FFFD. Empty when it tells nothing.
std::string driverInfo(DriverText form, SQLHDBC connection, SQLUSMALLINT what);
std::string columnAttribute(DriverText form, SQLHSTMT statement, SQLUSMALLINT column,
                            SQLUSMALLINT field);

/// What the driver tells of a column of a result.
struct ResultColumn {
  std::string name;
  SQLSMALLINT type = SQL_UNKNOWN_TYPE;  ///< SQL_INTEGER, SQL_WVARCHAR and so on
  std::string typeName;                 ///< the server's name, in lower case
  size_t size = 0;                      ///< of numbers: digits
  int scale = 0;
  bool isUnsigned = false;
};

/// The name, the type and the sizes of the column of that number, from 1.
SQLRETURN describeColumn(DriverText form, SQLHSTMT statement, SQLUSMALLINT number,
                         ResultColumn& column);

struct Diagnostic {
  std::string state;  ///< SQLSTATE, five characters
  int native = 0;
  std::string text;
};

/// The first thing that a call on the handle left behind; an empty state when there is nothing.
Diagnostic diagnostic(DriverText form, SQLSMALLINT type, SQLHANDLE handle);

/// The names of a list of the driver manager (its data sources, its drivers) and what it says of
/// each: a driver; or attributes NAME=VALUE with a NUL after each.
struct ManagerEntry {
  std::string name;
  std::string about;
};
std::vector<ManagerEntry> dataSources(SQLHENV environment);
std::vector<ManagerEntry> drivers(SQLHENV environment);

}  // namespace workbench
