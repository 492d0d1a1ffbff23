/// A connection to an SQL server, and the statements that run there.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/odbc/driver_text.h"
#include "workbench/odbc/server_error.h"

namespace workbench {

/// What is known of the driver that is called so, or that the data source names: its names there
/// and the file that it is in, to look words up in. Empty when there is no such source.
std::string aboutDriver(const std::string& driver);
std::string aboutDriverOfSource(const std::string& source);

class Connection {
 public:
  /// `text` is a connection string without a password. Throws ServerError, or DataError without a
  /// driver manager, or when the driver turns out to have got another text.
  Connection(const std::string& text, const std::optional<std::string>& password,
             DriverText form = DriverText::kUnicode);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  DriverText form() const { return form_; }
  /// Texts go in UTF-8 unless the driver is known to take them in UTF-16. Not for drivers of bytes.
  void takeBytesUnlessUnicode();
  /// Throws DataError when the driver would get another text than `text`, or has told another one.
  void refuseLost(const std::string& text) const;

  /// A text that the driver tells, such as SQL_DBMS_NAME.
  std::string info(SQLUSMALLINT what) const { return driverInfo(form_, connection_, what); }
  /// Statements are no transactions of their own any more; for servers that are not known better.
  void beginTransaction();
  void rollBack() noexcept;

  /// Asked while a statement runs, several times a second; true cancels it.
  void watch(std::function<bool()> isInterrupted) { isInterrupted_ = std::move(isInterrupted); }
  bool isInterrupted() const { return isInterrupted_ && isInterrupted_(); }

  SQLHDBC handle() const { return connection_; }
  const std::string& secret() const { return secret_; }

 private:
  void release() noexcept;
  [[noreturn]] void giveUp(SQLSMALLINT type, SQLHANDLE handle);

  DriverText form_;
  mutable std::optional<bool> passesUnicode_;  ///< once it was asked
  SQLHENV environment_ = SQL_NULL_HANDLE;
  SQLHDBC connection_ = SQL_NULL_HANDLE;
  bool connected_ = false;
  std::string secret_;
  std::function<bool()> isInterrupted_;
};

/// One statement and the rows of its result, one after the other, each value as a text.
class ServerStatement {
 public:
  /// A longer text is cut, and said to be.
  static constexpr size_t kWidestText = 32'767;

  explicit ServerStatement(Connection& connection);
  ~ServerStatement();
  ServerStatement(const ServerStatement&) = delete;
  ServerStatement& operator=(const ServerStatement&) = delete;

  /// Waits for the server. Throws ServerError, or Interrupted when the run is stopped meanwhile:
  /// then the server was told to stop, too.
  void run(const std::string& sql);
  /// Lists of the driver: tables, or the columns of one.
  void listTables();

  std::vector<ResultColumn> columns() const;
  /// To be called before the first fetch: numbers of these columns come as they are in memory.
  void asDoubles(std::vector<bool> columns) { asDoubles_ = std::move(columns); }
  /// False after the last row. Throws as run.
  bool fetch();
  size_t columnCount() const { return values_.size(); }
  bool isNull(size_t column) const;
  /// Of the row at hand; valid until the next one.
  std::string_view text(size_t column) const { return values_[column].text; }
  double number(size_t column) const { return values_[column].number; }
  bool isCut(size_t column) const { return values_[column].cut; }
  /// Drops the rest of the rows, so that another statement can run.
  void close();

  /// Of values that came so far, as the program takes them: texts in UTF-8, doubles.
  int64_t bytes() const { return bytes_; }
  int64_t rows() const { return rows_; }

 private:
  struct Value {
    std::vector<SQLWCHAR> units;
    std::vector<char> bytes;
    double number = 0.0;
    SQLLEN length = 0;
    std::string text;
    bool cut = false;
  };
  void bind();
  void takeText(Value& value);
  void wait(const std::function<SQLRETURN()>& call);
  [[noreturn]] void fail() const;

  Connection& connection_;
  SQLHSTMT statement_ = SQL_NULL_HANDLE;
  std::vector<bool> asDoubles_;
  std::vector<Value> values_;
  bool bound_ = false;
  int64_t bytes_ = 0;
  int64_t rows_ = 0;
};

}  // namespace workbench
