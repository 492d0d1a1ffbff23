#include "workbench/odbc/driver_text.h"

#include <algorithm>
#include <array>

#include "workbench/odbc/utf16.h"
#include "workbench/text/utf8.h"

namespace workbench {
namespace {

/// Of a name, a message or a path.
constexpr size_t kLongestText = 8'192;

/// Room that a driver writes a text to, with a zero at its end, in its own form.
class TextRoom {
 public:
  explicit TextRoom(DriverText form, size_t length = kLongestText) {
    if (form == DriverText::kUnicode) {
      units_.resize(length);
    } else {
      bytes_.resize(length);
    }
  }
  SQLWCHAR* units() { return units_.data(); }
  SQLCHAR* bytes() { return bytes_.data(); }
  /// In units or bytes.
  SQLSMALLINT length() const {
    return static_cast<SQLSMALLINT>(std::max(units_.size(), bytes_.size()));
  }
  /// Of the units, in bytes.
  SQLSMALLINT unitBytes() const {
    return static_cast<SQLSMALLINT>(units_.size() * sizeof(SQLWCHAR));
  }

  std::string text() const {
    std::string text;
    if (!units_.empty()) {
      const auto end = std::find(units_.begin(), units_.end(), SQLWCHAR{0});
      appendUtf8(units_.data(), static_cast<size_t>(end - units_.begin()), text);
      return text;
    }
    text.assign(bytes_.begin(), std::find(bytes_.begin(), bytes_.end(), SQLCHAR{0}));
    return validUtf8(text);
  }

 private:
  std::vector<SQLWCHAR> units_;
  std::vector<SQLCHAR> bytes_;
};

/// With a zero after the last byte.
std::vector<SQLCHAR> bytesOf(std::string_view text) {
  std::vector<SQLCHAR> bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

/// All that a function of the driver manager lists.
template <typename List>
std::vector<ManagerEntry> listed(List list, SQLHENV environment) {
  std::vector<ManagerEntry> entries;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  for (;;) {
    std::array<SQLCHAR, 1024> name{};
    std::array<SQLCHAR, 8192> about{};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT aboutLength = 0;
    if (!SQL_SUCCEEDED(list(environment, direction, name.data(), SQLSMALLINT{1024}, &nameLength,
                            about.data(), SQLSMALLINT{8192}, &aboutLength))) {
      return entries;
    }
    direction = SQL_FETCH_NEXT;
    const auto held = std::clamp<SQLSMALLINT>(aboutLength, 0, 8191);
    entries.push_back({std::string(name.begin(), std::find(name.begin(), name.end(), 0)),
                       std::string(about.begin(), about.begin() + held)});
  }
}

}  // namespace

bool passesUnicode(SQLHDBC connection) {
  // Of three alphabets and beyond 16 bits: no encoding in bytes but those of Unicode has them all.
  std::vector<SQLWCHAR> sent = utf16Of("SELECT '\u0142\u65e5\U0001f600'");
  std::vector<SQLWCHAR> back(4 * sent.size());
  SQLINTEGER length = 0;
  const SQLRETURN done =
      odbc().NativeSqlW(connection, sent.data(), static_cast<SQLINTEGER>(sent.size() - 1),
                        back.data(), static_cast<SQLINTEGER>(back.size()), &length);
  return SQL_SUCCEEDED(done) &&
         std::search(back.begin(), back.end(), sent.begin(), sent.end() - 1) != back.end();
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

SQLRETURN driverConnect(DriverText form, SQLHDBC connection, const std::string& text) {
  SQLSMALLINT length = 0;
  if (form == DriverText::kUnicode) {
    std::vector<SQLWCHAR> units = utf16Of(text);
    return odbc().DriverConnectW(connection, nullptr, units.data(), SQL_NTS, nullptr, 0, &length,
                                 SQL_DRIVER_NOPROMPT);
  }
  std::vector<SQLCHAR> bytes = bytesOf(text);
  return odbc().DriverConnect(connection, nullptr, bytes.data(), SQL_NTS, nullptr, 0, &length,
                              SQL_DRIVER_NOPROMPT);
}

SQLRETURN execute(DriverText form, SQLHSTMT statement, const std::string& sql) {
  if (form == DriverText::kUnicode) {
    std::vector<SQLWCHAR> units = utf16Of(sql);
    return odbc().ExecDirectW(statement, units.data(), SQL_NTS);
  }
  std::vector<SQLCHAR> bytes = bytesOf(sql);
  return odbc().ExecDirect(statement, bytes.data(), SQL_NTS);
}

std::string driverInfo(DriverText form, SQLHDBC connection, SQLUSMALLINT what) {
  TextRoom room(form);
  SQLSMALLINT length = 0;
  const SQLRETURN done =
      form == DriverText::kUnicode
          ? odbc().GetInfoW(connection, what, room.units(), room.unitBytes(), &length)
          : odbc().GetInfo(connection, what, room.bytes(), room.length(), &length);
  return SQL_SUCCEEDED(done) ? room.text() : "";
}

std::string columnAttribute(DriverText form, SQLHSTMT statement, SQLUSMALLINT column,
                            SQLUSMALLINT field) {
  TextRoom room(form);
  SQLSMALLINT length = 0;
  const SQLRETURN done = form == DriverText::kUnicode
                             ? odbc().ColAttributeW(statement, column, field, room.units(),
                                                    room.unitBytes(), &length, nullptr)
                             : odbc().ColAttribute(statement, column, field, room.bytes(),
                                                   room.length(), &length, nullptr);
  return SQL_SUCCEEDED(done) ? room.text() : "";
}

SQLRETURN describeColumn(DriverText form, SQLHSTMT statement, SQLUSMALLINT number,
                         ResultColumn& column) {
  TextRoom room(form);
  SQLSMALLINT length = 0;
  SQLSMALLINT nullable = 0;
  SQLSMALLINT digits = 0;
  SQLULEN size = 0;
  const SQLRETURN done = form == DriverText::kUnicode
                             ? odbc().DescribeColW(statement, number, room.units(), room.length(),
                                                   &length, &column.type, &size, &digits, &nullable)
                             : odbc().DescribeCol(statement, number, room.bytes(), room.length(),
                                                  &length, &column.type, &size, &digits, &nullable);
  column.name = room.text();
  column.size = size;
  column.scale = digits;
  return done;
}

Diagnostic diagnostic(DriverText form, SQLSMALLINT type, SQLHANDLE handle) {
  TextRoom state(form, 6);
  TextRoom room(form);
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN found = form == DriverText::kUnicode
                              ? odbc().GetDiagRecW(type, handle, 1, state.units(), &native,
                                                   room.units(), room.length(), &length)
                              : odbc().GetDiagRec(type, handle, 1, state.bytes(), &native,
                                                  room.bytes(), room.length(), &length);
  if (!SQL_SUCCEEDED(found)) return {};
  return {state.text(), native, room.text()};
}

std::vector<ManagerEntry> dataSources(SQLHENV environment) {
  return listed(odbc().DataSources, environment);
}

std::vector<ManagerEntry> drivers(SQLHENV environment) {
  return listed(odbc().Drivers, environment);
}

}  // namespace workbench
