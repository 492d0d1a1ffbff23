#include "workbench/odbc/connection.h"

#include <array>
#include <bit>

#include "workbench/odbc/connection_text.h"
#include "workbench/odbc/utf16.h"
#include "workbench/text/text_fold.h"

namespace workbench {
namespace {

constexpr SQLULEN kLoginSeconds = 15;

/// Whole numbers go to the driver manager where it takes pointers.
template <typename Value>
SQLPOINTER asPointer(Value value) {
  return std::bit_cast<SQLPOINTER>(static_cast<SQLULEN>(value));
}

SQLHENV newEnvironment() {
  SQLHENV environment = SQL_NULL_HANDLE;
  if (!SQL_SUCCEEDED(odbc().AllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment))) {
    throw ServerError("HY001", 0, "the ODBC driver manager cannot be started");
  }
  odbc().SetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, asPointer(SQL_OV_ODBC3), 0);
  return environment;
}

}  // namespace

std::string driverOfSource(const std::string& source) {
  const SQLHENV environment = newEnvironment();
  std::array<SQLWCHAR, 256> name{};
  std::array<SQLWCHAR, 1024> driver{};
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT driverLength = 0;
  std::string found;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(odbc().DataSourcesW(
      environment, direction, name.data(), static_cast<SQLSMALLINT>(name.size()), &nameLength,
      driver.data(), static_cast<SQLSMALLINT>(driver.size()), &driverLength))) {
    direction = SQL_FETCH_NEXT;
    std::string candidate;
    appendUtf8(name.data(), static_cast<size_t>(nameLength), candidate);
    if (foldCase(candidate) != foldCase(source)) continue;
    appendUtf8(driver.data(), static_cast<size_t>(driverLength), found);
    break;
  }
  odbc().FreeHandle(SQL_HANDLE_ENV, environment);
  return found;
}

Connection::Connection(const std::string& text, const std::optional<std::string>& password)
    : environment_(newEnvironment()), secret_(password.value_or("")) {
  if (!SQL_SUCCEEDED(odbc().AllocHandle(SQL_HANDLE_DBC, environment_, &connection_))) {
    const ServerError error = serverError(SQL_HANDLE_ENV, environment_, secret_);
    release();
    throw ServerError(error);
  }
  odbc().SetConnectAttrW(connection_, SQL_ATTR_LOGIN_TIMEOUT, asPointer(kLoginSeconds), 0);
  std::vector<SQLWCHAR> units =
      utf16Of(password ? text + connectionString({{"PWD", *password}}) : text);
  SQLSMALLINT length = 0;
  const SQLRETURN done = odbc().DriverConnectW(connection_, nullptr, units.data(), SQL_NTS, nullptr,
                                               0, &length, SQL_DRIVER_NOPROMPT);
  if (!SQL_SUCCEEDED(done)) {
    const ServerError error = serverError(SQL_HANDLE_DBC, connection_, secret_);
    release();
    throw ServerError(error);
  }
  connected_ = true;
}

Connection::~Connection() {
  if (connected_) {
    rollBack();
    odbc().Disconnect(connection_);
  }
  release();
}

void Connection::release() noexcept {
  if (connection_ != SQL_NULL_HANDLE) odbc().FreeHandle(SQL_HANDLE_DBC, connection_);
  odbc().FreeHandle(SQL_HANDLE_ENV, environment_);
}

std::string Connection::info(SQLUSMALLINT what) const {
  std::array<SQLWCHAR, 256> units{};
  SQLSMALLINT bytes = 0;
  const SQLRETURN done =
      odbc().GetInfoW(connection_, what, units.data(),
                      static_cast<SQLSMALLINT>(units.size() * sizeof(SQLWCHAR)), &bytes);
  std::string text;
  if (!SQL_SUCCEEDED(done)) return text;
  size_t length = 0;
  while (length < units.size() && units[length] != 0) ++length;
  appendUtf8(units.data(), length, text);
  return text;
}

void Connection::beginTransaction() {
  odbc().SetConnectAttrW(connection_, SQL_ATTR_AUTOCOMMIT, asPointer(SQL_AUTOCOMMIT_OFF), 0);
}

void Connection::rollBack() noexcept { odbc().EndTran(SQL_HANDLE_DBC, connection_, SQL_ROLLBACK); }

}  // namespace workbench
