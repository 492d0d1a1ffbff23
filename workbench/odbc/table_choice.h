/// Which table of a server is meant.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/odbc/connection.h"

namespace workbench {

struct ServerTable {
  std::string catalogue;
  std::string schema;
  std::string name;
  bool ofSystem = false;

  /// What names it in a statement: the schema, else the catalogue (a server has one or the other
  /// that matters), if any, and the name.
  std::vector<std::string> parts() const;
  std::string shown() const;
};

/// Of a statement that lists tables.
std::vector<ServerTable> readTables(ServerStatement& statement);

/// "schema.table" in its parts.
std::vector<std::string> namedParts(const std::string& name);

/// The table of that name, with or without its schema, exactly or else whatever the case; without a
/// name the only one. Throws DataError that names near ones.
const ServerTable& chooseTable(const std::vector<ServerTable>& tables, const std::string& label,
                               const std::optional<std::string>& wanted);

}  // namespace workbench
