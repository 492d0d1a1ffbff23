/// Types of columns that a driver does not tell, from the server's own catalogue.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "workbench/odbc/connection.h"
#include "workbench/odbc/server_column.h"

namespace workbench {

/// Runs a statement whose rows are texts, nulls being empty.
using RowsOf = std::function<std::vector<std::vector<std::string>>(const std::string& sql)>;

/// PostgreSQL: the type of every column of `relation`, which stands after FROM; domains are what
/// they are made of. `version` is the server's, such as "15.0.4".
void lookPostgresTypesUp(const RowsOf& rowsOf, const std::string& relation,
                         const std::string& version, std::vector<ServerColumn>& columns);

/// MariaDB: the enumerations among the columns of a table, with their values, and those that were
/// declared as BOOLEAN, which is a name of TINYINT(1).
void lookMariaTypesUp(const RowsOf& rowsOf, const std::string& schema, const std::string& table,
                      std::vector<ServerColumn>& columns);

/// A string in a statement.
std::string literal(const std::string& text);

}  // namespace workbench
