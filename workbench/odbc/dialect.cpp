#include "workbench/odbc/dialect.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <initializer_list>

#include "workbench/text/text_fold.h"

namespace workbench {
namespace {

constexpr int kExactDigits = 15;

// Plain SQL, for servers that nothing else is known of.

void plainSettle(ServerColumn&, const ResultColumn&) {}
std::string plainShown(const ServerColumn& column, bool) { return column.quoted; }
std::string plainGrouped(const ServerColumn& column) {
  const bool isText = column.kind == ServerKind::kText || column.kind == ServerKind::kEnumeration;
  return isText ? "" : column.quoted;
}
std::string plainAnyOf(const ServerColumn&, const std::string& shown) { return shown; }
std::string plainFloor(const std::string& number) { return fmt::format("FLOOR({})", number); }
std::string plainOddWeight(const ServerColumn& column) {
  if (column.floating || (column.digits > 0 && column.digits <= kExactDigits)) return "";
  return fmt::format("{0} <> CAST(CAST({0} AS DOUBLE PRECISION) AS DECIMAL({1}, {2}))",
                     column.quoted, column.digits, column.scale);
}
std::string plainSoundWeight(const ServerColumn&) { return ""; }
std::string plainSum(const std::string& number) { return fmt::format("SUM({})", number); }

// PostgreSQL. Collations are deterministic, which is bytewise as far as equality goes, unless
// somebody has made one that is not: then the columns are marked as not plain.

std::string postgresText(const ServerColumn& column) {
  if (column.plainText) return column.quoted;
  return fmt::format("CAST({} AS TEXT) COLLATE \"C\"", column.quoted);
}

std::string postgresShown(const ServerColumn& column, bool asText) {
  switch (column.kind) {
    case ServerKind::kNumber:
      if (column.floating && !asText && column.typeName == "float4") {
        return fmt::format("CAST(CAST({} AS DOUBLE PRECISION) AS TEXT)", column.quoted);
      }
      return column.floating || asText ? fmt::format("CAST({} AS TEXT)", column.quoted)
                                       : column.quoted;
    case ServerKind::kText:
      return postgresText(column);
    case ServerKind::kTime:
      if (column.typeName != "timetz") break;
      return fmt::format("CAST(CAST({} AT TIME ZONE 'UTC' AS TIME) AS TEXT)", column.quoted);
    default:
      break;
  }
  return fmt::format("CAST({} AS TEXT)", column.quoted);
}

std::string postgresGrouped(const ServerColumn& column) {
  return column.kind == ServerKind::kText ? postgresText(column) : column.quoted;
}

std::string postgresOddWeight(const ServerColumn& column) {
  if (column.typeName != "numeric") return "";
  return fmt::format("{0} <> CAST(CAST({0} AS DOUBLE PRECISION) AS NUMERIC)", column.quoted);
}

/// There a NaN is larger than all numbers.
std::string postgresSoundWeight(const ServerColumn& column) {
  if (!column.floating && column.typeName != "numeric") return "";
  return fmt::format(" AND {} < 'NaN'", column.quoted);
}

// MariaDB, and the server that it came from.

/// Not by a CAST, which engines that group at other servers may not know how to pass on.
constexpr const char* kMariaDouble = "POW({}, 1)";

std::string mariaText(const ServerColumn& column) {
  return fmt::format("CONVERT({} USING utf8mb4)", column.quoted);
}

std::string mariaShown(const ServerColumn& column, bool asText) {
  switch (column.kind) {
    case ServerKind::kNumber:
    case ServerKind::kZeroOne:
      if (asText) break;
      if (column.typeName == "float") return fmt::format(kMariaDouble, column.quoted);
      return column.quoted;
    case ServerKind::kBoolean:
      return fmt::format("CAST({} AS UNSIGNED)", column.quoted);
    case ServerKind::kText:
      return mariaText(column);
    default:
      break;
  }
  return fmt::format("CAST({} AS CHAR)", column.quoted);
}

/// By its bytes, spelt out: engines that group at other servers lose a collation on the way.
std::string mariaGrouped(const ServerColumn& column) {
  if (column.kind != ServerKind::kText) return column.quoted;
  return fmt::format("HEX({})", mariaText(column));
}

std::string mariaAnyOf(const ServerColumn& column, const std::string& shown) {
  return column.kind == ServerKind::kText ? fmt::format("MIN({})", shown) : shown;
}

std::string mariaOddWeight(const ServerColumn& column) {
  if (column.floating || (column.digits > 0 && column.digits <= kExactDigits)) return "";
  return fmt::format("{0} <> CAST(POW({0}, 1) AS DECIMAL({1}, {2}))", column.quoted, column.digits,
                     column.scale);
}

// SQLite. Any value may stand in any column, whatever the column was declared to be; of the result
// of an expression the driver says that it is a text.

bool holds(const std::string& typeName, std::initializer_list<const char*> words) {
  for (const char* word : words) {
    if (typeName.find(word) != std::string::npos) return true;
  }
  return false;
}

/// By the names that dates, booleans and bytes are declared by.
void sqliteSettle(ServerColumn& column, const ResultColumn& told) {
  const std::string& name = told.typeName;
  column.inMemory = false;
  column.floating = false;
  column.kind = ServerKind::kMixed;
  column.moments = holds(name, {"date", "time"});
  if (holds(name, {"bool"})) column.kind = ServerKind::kZeroOne;
  if (holds(name, {"blob", "binary"})) column.kind = ServerKind::kUnusable;
}

std::string sqliteShown(const ServerColumn& column, bool asText) {
  const std::string number = asText ? fmt::format("'t' || {}", column.quoted)
                                    : fmt::format("'n' || printf('%!.20g', {})", column.quoted);
  return fmt::format(
      "CASE typeof({0}) WHEN 'integer' THEN '{1}' || {0} WHEN 'real' THEN {2} WHEN 'text' THEN "
      "CASE WHEN instr({0}, char(0)) > 0 THEN '0' ELSE 't' || rtrim({0}) END WHEN 'blob' THEN 'b' "
      "END",
      column.quoted, asText ? 't' : 'n', number);
}

std::string sqliteGrouped(const ServerColumn& column) {
  return fmt::format("{} COLLATE BINARY", column.quoted);
}

/// Weights are not below 0 where this is asked for.
std::string sqliteFloor(const std::string& number) {
  return fmt::format("CAST({} AS INTEGER)", number);
}

std::string sqliteOddWeight(const ServerColumn& column) {
  return fmt::format("typeof({}) IN ('text', 'blob')", column.quoted);
}

/// The driver would cut the digits of a number that it shows.
std::string sqliteSum(const std::string& number) {
  return fmt::format("printf('%!.20g', TOTAL({}))", number);
}

/// What all servers are taken for, and the start of what is known of some.
Dialect plainDialect() {
  Dialect dialect;
  dialect.settle = plainSettle;
  dialect.shown = plainShown;
  dialect.grouped = plainGrouped;
  dialect.anyOf = plainAnyOf;
  dialect.floor = plainFloor;
  dialect.sum = plainSum;
  dialect.oddWeight = plainOddWeight;
  dialect.soundWeight = plainSoundWeight;
  return dialect;
}

Dialect postgres() {
  Dialect dialect = plainDialect();
  dialect.server = "postgresql";
  dialect.session = {"SET TIME ZONE 'UTC'", "SET DATESTYLE TO 'ISO, YMD'",
                     "SET EXTRA_FLOAT_DIGITS TO 3", "SET STANDARD_CONFORMING_STRINGS TO ON",
                     "BEGIN TRANSACTION ISOLATION LEVEL REPEATABLE READ, READ ONLY"};
  dialect.types = TypeSource::kPostgresCatalogue;
  dialect.cursor = true;
  dialect.limit = true;
  dialect.scan = {
      .dollarQuotes = true, .nestedComments = true, .backslashes = Backslashes::kAfterE};
  dialect.shown = postgresShown;
  dialect.grouped = postgresGrouped;
  dialect.oddWeight = postgresOddWeight;
  dialect.soundWeight = postgresSoundWeight;
  return dialect;
}

Dialect maria(std::string_view server) {
  Dialect dialect = plainDialect();
  dialect.server = server;
  dialect.session = {"SET time_zone = '+00:00'",
                     "SET SESSION TRANSACTION ISOLATION LEVEL REPEATABLE READ",
                     "START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"};
  dialect.types = TypeSource::kInformationSchema;
  dialect.limit = true;
  dialect.asDouble = kMariaDouble;
  dialect.scan = {.hashComments = true,
                  .dashesNeedBlank = true,
                  .runningComments = true,
                  .backslashes = Backslashes::kInAll};
  dialect.shown = mariaShown;
  dialect.grouped = mariaGrouped;
  dialect.anyOf = mariaAnyOf;
  dialect.oddWeight = mariaOddWeight;
  return dialect;
}

Dialect sqlite() {
  Dialect dialect = plainDialect();
  dialect.server = "sqlite";
  dialect.session = {"PRAGMA query_only = ON", "BEGIN"};
  dialect.marked = true;
  dialect.limit = true;
  dialect.asDouble = "CAST({} AS REAL)";
  dialect.scan = {};
  dialect.settle = sqliteSettle;
  dialect.shown = sqliteShown;
  dialect.grouped = sqliteGrouped;
  dialect.floor = sqliteFloor;
  dialect.sum = sqliteSum;
  dialect.oddWeight = sqliteOddWeight;
  return dialect;
}

}  // namespace

const Dialect& dialectOf(const std::string& server) {
  static const std::array<Dialect, 5> known{postgres(), maria("mariadb"), maria("mysql"), sqlite(),
                                            plainDialect()};
  const std::string folded = foldCase(server);
  return *std::find_if(known.begin(), known.end(),
                       [&](const Dialect& dialect) { return folded.starts_with(dialect.server); });
}

ConnectionAttributes driverAttributes(const std::string& driver) {
  const bool isSqlite = foldCase(driver).find("sqlite") != std::string::npos;
  if (!isSqlite) return {};
  return {{"NoCreat", "1"}, {"StepAPI", "1"}};
}

}  // namespace workbench
