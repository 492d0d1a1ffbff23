/// SQL that servers have in common: what Dialect begins with.
#pragma once

#include <string>

#include "workbench/odbc/server_column.h"

namespace workbench::plain_sql {

// As the members of Dialect of the same names.
void settle(ServerColumn& column, const ResultColumn& told);
std::string shown(const ServerColumn& column, bool asText);
std::string grouped(const ServerColumn& column);
std::string anyOf(const ServerColumn& column, const std::string& shown);
std::string floor(const std::string& number);
std::string sum(const std::string& number);
std::string oddWeight(const ServerColumn& column);
std::string soundWeight(const ServerColumn& column);

/// Whether a number of the column in binary always gives back the digits that it was made from.
bool isExactInBinary(const ServerColumn& column);

}  // namespace workbench::plain_sql
