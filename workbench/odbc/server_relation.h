/// A table of a server, or the result of a query there.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/odbc/dialect.h"

namespace workbench {

/// How a server that wants a password gets it.
struct ServerPassword {
  std::optional<std::string> given = {};
  /// Called when the server wants one and none was given; it answers nothing when there is none.
  std::function<std::optional<std::string>()> ask = {};
};

struct ServerOptions {
  std::string label;  ///< names the data in messages
  std::string text;   ///< a connection string, or the name of a data source
  std::optional<std::string> query;
  std::optional<std::string> table;
  ServerPassword password;
  std::function<bool()> isInterrupted;
  /// Told of the files that the driver says it reads, before a case is read, and of names that may
  /// not be files; may be empty. What it throws ends the reading.
  std::function<void(const std::string& file)> reads = {};
};

/// One relation and the connection that reads it, in a read-only transaction where the server has
/// one.
class ServerRelation {
 public:
  /// Connects and looks the columns up. Throws DataError.
  explicit ServerRelation(const ServerOptions& options);

  const std::string& label() const { return label_; }
  const Dialect& dialect() const { return *dialect_; }
  Connection& connection() { return *connection_; }
  const std::vector<ServerColumn>& columns() const { return columns_; }
  /// What stands after FROM.
  const std::string& sql() const { return sql_; }
  /// Every statement so far.
  const std::vector<std::string>& statements() const { return statements_; }
  /// Throws DataError when the connection is gone.
  void refuseLostConnection();
  /// What the server said, as the text of a DataError.
  std::string problem(const ServerError& error) const;

 private:
  void connect(const ServerOptions& options);
  void beginSession();
  void tellFiles(const std::function<void(const std::string& file)>& told);
  void restartSession();
  void takeQuery(const std::string& query);
  void takeTable(const std::optional<std::string>& wanted);
  void describe(const std::string& sql);
  void lookTypesUp(const std::vector<std::string>& table);
  std::string quoted(const std::string& name) const;
  std::string quotedPath(const std::vector<std::string>& parts) const;
  void run(ServerStatement& statement, const std::string& sql);

  std::string label_;
  std::unique_ptr<Connection> connection_;
  const Dialect* dialect_ = nullptr;
  std::string quote_ = "\"";
  std::string sql_;
  std::vector<ServerColumn> columns_;
  std::vector<ResultColumn> told_;
  std::vector<std::string> statements_;
};

}  // namespace workbench
