/// All cases of a selection, one row after the other, in bounded memory.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/odbc/counting_statement.h"
#include "workbench/odbc/server_relation.h"

namespace workbench {

/// The rows of one statement, or of several that follow each other.
class ServerRows {
 public:
  virtual ~ServerRows() = default;
  ServerRows() = default;
  ServerRows(const ServerRows&) = delete;
  ServerRows& operator=(const ServerRows&) = delete;

  /// False after the last row. Throws ServerError, DataError or Interrupted.
  virtual bool next() = 0;
  /// The row at hand; its first columns are those that were asked for.
  virtual const ServerStatement& row() const = 0;
  /// What has come so far, as ServerStatement counts it.
  virtual int64_t rows() const { return row().rows(); }
  virtual int64_t bytes() const { return row().bytes(); }
};

/// The rows of one statement, which the driver may hold all at once. `inMemory` is as for
/// ServerStatement::asDoubles.
std::unique_ptr<ServerRows> openRows(ServerRelation& relation, const std::string& sql,
                                     std::vector<bool> inMemory);

/// A row for each case, brought so that the driver never holds many of them.
std::unique_ptr<ServerRows> openCases(ServerRelation& relation, const Selection& selection,
                                      std::vector<bool> inMemory);

/// The statements of openCases; where the cases come in several parts those of the first.
std::vector<std::string> caseStatements(const ServerRelation& relation, const Selection& selection);

}  // namespace workbench
