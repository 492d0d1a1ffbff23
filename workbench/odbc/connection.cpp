#include "workbench/odbc/connection.h"

#include <algorithm>
#include <bit>

#include "workbench/odbc/connection_text.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"

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

/// The word with the first character beyond ASCII.
std::string firstOddWord(const std::string& text) {
  constexpr const char* kBlanks = " \t\r\n";
  const auto odd = std::find_if_not(text.begin(), text.end(), [](char c) {
    return isAscii({&c, 1});
  });
  const auto at = static_cast<size_t>(odd - text.begin());
  const size_t begin = text.find_last_of(kBlanks, at) + 1;  // 0 without a blank
  return text.substr(begin, text.find_first_of(kBlanks, at) - begin);
}

}  // namespace

std::string aboutDriver(const std::string& driver) {
  const SQLHENV environment = newEnvironment();
  std::string about = driver;
  for (const ManagerEntry& entry : drivers(environment)) {
    if (foldCase(entry.name) != foldCase(driver)) continue;
    std::string attributes = entry.about;
    std::replace(attributes.begin(), attributes.end(), '\0', ' ');
    about += " " + attributes;
  }
  odbc().FreeHandle(SQL_HANDLE_ENV, environment);
  return about;
}

std::string aboutDriverOfSource(const std::string& source) {
  const SQLHENV environment = newEnvironment();
  std::string driver;
  for (const ManagerEntry& entry : dataSources(environment)) {
    if (foldCase(entry.name) == foldCase(source)) driver = entry.about;
  }
  odbc().FreeHandle(SQL_HANDLE_ENV, environment);
  return driver.empty() ? "" : aboutDriver(driver);
}

Connection::Connection(const std::string& text, const std::optional<std::string>& password,
                       DriverText form)
    : form_(form), environment_(newEnvironment()), secret_(password.value_or("")) {
  if (!SQL_SUCCEEDED(odbc().AllocHandle(SQL_HANDLE_DBC, environment_, &connection_))) {
    giveUp(SQL_HANDLE_ENV, environment_);
  }
  odbc().SetConnectAttrW(connection_, SQL_ATTR_LOGIN_TIMEOUT, asPointer(kLoginSeconds), 0);
  const std::string whole = password ? text + connectionString({{"PWD", *password}}) : text;
  if (!SQL_SUCCEEDED(driverConnect(form_, connection_, whole))) {
    giveUp(SQL_HANDLE_DBC, connection_);
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

void Connection::giveUp(SQLSMALLINT type, SQLHANDLE handle) {
  const ServerError error = serverError(form_, type, handle, secret_);
  release();
  throw ServerError(error);
}

void Connection::takeBytesUnlessUnicode() {
  if (!passesUnicode_) passesUnicode_ = passesUnicode(connection_);
  if (!*passesUnicode_) form_ = DriverText::kBytes;
}

void Connection::refuseLost(const std::string& text) const {
  if (form_ == DriverText::kBytes || isAscii(text)) return;
  if (!passesUnicode_) passesUnicode_ = passesUnicode(connection_);
  if (*passesUnicode_) return;
  throw DataError("the server's driver takes no Unicode, and characters would be lost of: " +
                  firstOddWord(text) +
                  "\nUse the driver's Unicode version, or names and texts that are ASCII.");
}

void Connection::beginTransaction() {
  odbc().SetConnectAttrW(connection_, SQL_ATTR_AUTOCOMMIT, asPointer(SQL_AUTOCOMMIT_OFF), 0);
}

void Connection::rollBack() noexcept { odbc().EndTran(SQL_HANDLE_DBC, connection_, SQL_ROLLBACK); }

}  // namespace workbench
