#include "workbench/odbc/dialect.h"

#include <fmt/format.h>

#include <initializer_list>

#include "workbench/text/text_fold.h"

namespace workbench {
namespace {

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
  if (plain_sql::isExactInBinary(column)) return "";
  return fmt::format("{0} <> CAST(POW({0}, 1) AS DECIMAL({1}, {2}))", column.quoted, column.digits,
                     column.scale);
}

std::string mariaHash(const std::string& value) { return fmt::format("CRC32({})", value); }

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
  return fmt::format(
      "CASE typeof({0}) WHEN 'integer' THEN '{1}' || {0} WHEN 'real' THEN 'n' || printf('%!.20g', "
      "{0}) WHEN 'text' THEN CASE WHEN instr({0}, char(0)) > 0 THEN '0' ELSE 't' || rtrim({0}) END "
      "WHEN 'blob' THEN 'b' END",
      column.quoted, asText ? 't' : 'n');
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

/// One entry for each kind of server. What an entry leaves out is as in plain SQL.
std::vector<Dialect> allDialects() {
  return {
      {
          .servers = {"postgresql"},
          .session = {"SET TIME ZONE 'UTC'", "SET DATESTYLE TO 'ISO, YMD'",
                      "SET EXTRA_FLOAT_DIGITS TO 3", "SET STANDARD_CONFORMING_STRINGS TO ON",
                      "BEGIN TRANSACTION ISOLATION LEVEL REPEATABLE READ, READ ONLY"},
          .bytesAsUtf8 = "SET CLIENT_ENCODING TO 'UTF8'",
          .types = TypeSource::kPostgresCatalogue,
          .manyRows = ManyRows::kByCursor,
          .limit = true,
          .scan = {.dollarQuotes = true,
                   .nestedComments = true,
                   .backslashes = Backslashes::kAfterE},
          .shown = postgresShown,
          .grouped = postgresGrouped,
          .oddWeight = postgresOddWeight,
          .soundWeight = postgresSoundWeight,
      },
      {
          .servers = {"mariadb", "mysql"},
          .session = {"SET time_zone = '+00:00'",
                      "SET SESSION TRANSACTION ISOLATION LEVEL REPEATABLE READ",
                      "START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"},
          .types = TypeSource::kInformationSchema,
          .manyRows = ManyRows::kInParts,
          .limit = true,
          .asDouble = kMariaDouble,
          .scan = {.hashComments = true,
                   .dashesNeedBlank = true,
                   .runningComments = true,
                   .backslashes = Backslashes::kInAll},
          .shown = mariaShown,
          .grouped = mariaGrouped,
          .anyOf = mariaAnyOf,
          .oddWeight = mariaOddWeight,
          .hash = mariaHash,
      },
      {
          .servers = {"sqlite"},
          .session = {"PRAGMA query_only = ON", "BEGIN"},
          .bytesAsUtf8 = "",
          .files = "PRAGMA database_list",
          .marked = true,
          .limit = true,
          .asDouble = "CAST({} AS REAL)",
          .scan = {},
          .settle = sqliteSettle,
          .shown = sqliteShown,
          .grouped = sqliteGrouped,
          .floor = sqliteFloor,
          .sum = sqliteSum,
          .oddWeight = sqliteOddWeight,
      },
  };
}

}  // namespace

const Dialect& dialectOf(const std::string& server) {
  static const std::vector<Dialect> known = allDialects();
  static const Dialect plain;
  const std::string folded = foldCase(server);
  for (const Dialect& dialect : known) {
    for (const std::string_view name : dialect.servers) {
      if (folded.starts_with(name)) return dialect;
    }
  }
  return plain;
}

DriverTraits driverTraits(const std::string& about) {
  const std::string folded = foldCase(about);
  if (holds(folded, {"sqlite"})) return {DriverText::kBytes, {{"NoCreat", "1"}, {"StepAPI", "1"}}};
  if (holds(folded, {"psqlodbca"})) return {DriverText::kBytes};
  if (holds(folded, {"maodbc"})) return {DriverText::kUnicode, {}, {{"CHARSET", "utf8mb4"}}};
  return {};
}

}  // namespace workbench
