#include "workbench/odbc/plain_sql.h"

#include <fmt/format.h>

namespace workbench::plain_sql {

constexpr int kExactDigits = 15;

void settle(ServerColumn& /*column*/, const ResultColumn& /*told*/) {}

std::string shown(const ServerColumn& column, bool /*asText*/) { return column.quoted; }

std::string grouped(const ServerColumn& column) {
  const bool isText = column.kind == ServerKind::kText || column.kind == ServerKind::kEnumeration;
  return isText ? "" : column.quoted;
}

std::string anyOf(const ServerColumn& /*column*/, const std::string& shown) { return shown; }

std::string floor(const std::string& number) { return fmt::format("FLOOR({})", number); }

std::string sum(const std::string& number) { return fmt::format("SUM({})", number); }

bool isExactInBinary(const ServerColumn& column) {
  return column.floating || (column.digits > 0 && column.digits <= kExactDigits);
}

std::string oddWeight(const ServerColumn& column) {
  if (isExactInBinary(column)) return "";
  return fmt::format("{0} <> CAST(CAST({0} AS DOUBLE PRECISION) AS DECIMAL({1}, {2}))",
                     column.quoted, column.digits, column.scale);
}

std::string soundWeight(const ServerColumn& /*column*/) { return ""; }

}  // namespace workbench::plain_sql
