#include <algorithm>
#include <chrono>
#include <future>

#include "workbench/odbc/connection.h"
#include "workbench/odbc/utf16.h"
#include "workbench/system/exit_steps.h"
#include "workbench/text/text_fold.h"
#include "workbench/text/utf8.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr std::chrono::milliseconds kLook{100};

/// No unit of UTF-16 takes more in UTF-8.
constexpr size_t kMostBytes = 3;

}  // namespace

ServerStatement::ServerStatement(Connection& connection) : connection_(connection) {
  if (SQL_SUCCEEDED(odbc().AllocHandle(SQL_HANDLE_STMT, connection.handle(), &statement_))) return;
  throw ServerError(
      serverError(connection.form(), SQL_HANDLE_DBC, connection.handle(), connection.secret()));
}

ServerStatement::~ServerStatement() { odbc().FreeHandle(SQL_HANDLE_STMT, statement_); }

void ServerStatement::fail() const {
  throw ServerError(
      serverError(connection_.form(), SQL_HANDLE_STMT, statement_, connection_.secret()));
}

/// A driver may wait as long as it likes: it does so on a thread of its own, while this one looks
/// whether anybody wants to stop.
void ServerStatement::wait(const std::function<SQLRETURN()>& call) {
  const ExitStep cancelling([this] { odbc().Cancel(statement_); });
  std::future<SQLRETURN> answer = std::async(std::launch::async, call);
  for (int looks = 0; answer.wait_for(kLook) != std::future_status::ready;) {
    // Told again now and then: the statement may not have been at the server the first time.
    if (connection_.isInterrupted() && looks++ % 10 == 0) odbc().Cancel(statement_);
  }
  const SQLRETURN done = answer.get();
  if (connection_.isInterrupted()) throw Interrupted();
  if (!SQL_SUCCEEDED(done) && done != SQL_NO_DATA) fail();
}

void ServerStatement::run(const std::string& sql) {
  close();
  connection_.refuseLost(sql);
  wait([&] { return execute(connection_.form(), statement_, sql); });
}

void ServerStatement::listTables() {
  close();
  wait([&] { return odbc().TablesW(statement_, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0); });
}

std::vector<ResultColumn> ServerStatement::columns() const {
  SQLSMALLINT count = 0;
  odbc().NumResultCols(statement_, &count);
  std::vector<ResultColumn> columns(static_cast<size_t>(std::max<SQLSMALLINT>(count, 0)));
  for (size_t i = 0; i < columns.size(); ++i) {
    const auto number = static_cast<SQLUSMALLINT>(i + 1);
    ResultColumn& column = columns[i];
    if (!SQL_SUCCEEDED(describeColumn(connection_.form(), statement_, number, column))) fail();
    connection_.refuseLost(column.name);
    column.typeName =
        foldCase(columnAttribute(connection_.form(), statement_, number, SQL_DESC_TYPE_NAME));
    SQLLEN isUnsigned = 0;
    odbc().ColAttributeW(statement_, number, SQL_DESC_UNSIGNED, nullptr, 0, nullptr, &isUnsigned);
    column.isUnsigned = isUnsigned != 0;
  }
  return columns;
}

void ServerStatement::bind() {
  bound_ = true;
  SQLSMALLINT count = 0;
  odbc().NumResultCols(statement_, &count);
  values_.resize(static_cast<size_t>(std::max<SQLSMALLINT>(count, 0)));
  asDoubles_.resize(values_.size());
  for (size_t i = 0; i < values_.size(); ++i) {
    Value& value = values_[i];
    const auto number = static_cast<SQLUSMALLINT>(i + 1);
    SQLRETURN done = SQL_ERROR;
    if (asDoubles_[i]) {
      done = odbc().BindCol(statement_, number, SQL_C_DOUBLE, &value.number, sizeof(double),
                            &value.length);
    } else if (connection_.form() == DriverText::kBytes) {
      value.bytes.resize(kMostBytes * kWidestText + 1);
      done = odbc().BindCol(statement_, number, SQL_C_CHAR, value.bytes.data(),
                            static_cast<SQLLEN>(value.bytes.size()), &value.length);
    } else {
      value.units.resize(kWidestText + 1);
      done =
          odbc().BindCol(statement_, number, SQL_C_WCHAR, value.units.data(),
                         static_cast<SQLLEN>(value.units.size() * sizeof(SQLWCHAR)), &value.length);
    }
    if (!SQL_SUCCEEDED(done)) fail();
  }
}

void ServerStatement::takeText(Value& value) {
  const bool isBytes = !value.bytes.empty();
  const auto room =
      static_cast<SQLLEN>(isBytes ? value.bytes.size() - 1 : kWidestText * sizeof(SQLWCHAR));
  value.text.clear();
  value.cut = value.length == SQL_NO_TOTAL || value.length > room;
  if (value.length == SQL_NULL_DATA) return;
  const auto held = static_cast<size_t>(value.cut ? room : value.length);
  if (!isBytes) return appendUtf8(value.units.data(), held / sizeof(SQLWCHAR), value.text);
  value.text.assign(value.bytes.data(), held);
  if (!isUtf8(value.text)) value.text = validUtf8(value.text);
}

bool ServerStatement::fetch() {
  if (!bound_) bind();
  if (connection_.isInterrupted()) throw Interrupted();
  const SQLRETURN done = odbc().Fetch(statement_);
  if (done == SQL_NO_DATA) return false;
  if (!SQL_SUCCEEDED(done)) fail();
  ++rows_;
  for (size_t i = 0; i < values_.size(); ++i) {
    Value& value = values_[i];
    if (asDoubles_[i]) {
      bytes_ += sizeof(double);
      continue;
    }
    takeText(value);
    bytes_ += static_cast<int64_t>(value.text.size());
  }
  return true;
}

bool ServerStatement::isNull(size_t column) const {
  return values_[column].length == SQL_NULL_DATA;
}

void ServerStatement::close() {
  odbc().FreeStmt(statement_, SQL_CLOSE);
  odbc().FreeStmt(statement_, SQL_UNBIND);
  bound_ = false;
}

}  // namespace workbench
