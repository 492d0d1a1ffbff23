/// What follows `odbc:` in DATA: a connection string, or the name of a data source.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace workbench {

/// The attributes of a connection string, as it spells them; values without their braces.
using ConnectionAttributes = std::vector<std::pair<std::string, std::string>>;

/// "DRIVER={PostgreSQL Unicode};SERVER=db" or "warehouse", which is "DSN=warehouse". Throws
/// DataError for a text that is neither.
ConnectionAttributes connectionAttributes(std::string_view text);

/// The value of the attribute of that name, whatever the case; null when it is not there.
const std::string* findAttribute(const ConnectionAttributes& attributes, std::string_view name);

/// The first attribute that holds a password or another secret; empty when there is none. A value
/// may have attributes of its own, as in "pqopt={password=p}", or be an address "http://me:p@host":
/// then "pqopt's password".
std::string secretAttribute(const ConnectionAttributes& attributes);

/// All that may name a file: the values, and those of the attributes in them.
std::vector<std::string> attributeValues(const ConnectionAttributes& attributes);

/// The string that a driver manager takes.
std::string connectionString(const ConnectionAttributes& attributes);

}  // namespace workbench
