#include "workbench/odbc/type_lookup.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <map>

namespace workbench {
namespace {

/// The first version of PostgreSQL whose collations need not be deterministic.
constexpr int kFirstWithOddCollations = 12;

struct PostgresType {
  std::string name;
  std::string category;  // b base, d domain, e enumeration, ...
  std::string base;      // of a domain
};

struct KnownType {
  std::string_view name;
  ServerKind kind;
  bool floating = false;
  bool plainText = true;
};

constexpr KnownType kPostgresTypes[] = {{"bool", ServerKind::kBoolean},
                                        {"bpchar", ServerKind::kText},
                                        {"citext", ServerKind::kText, false, false},
                                        {"date", ServerKind::kDate},
                                        {"float4", ServerKind::kNumber, true},
                                        {"float8", ServerKind::kNumber, true},
                                        {"int2", ServerKind::kNumber},
                                        {"int4", ServerKind::kNumber},
                                        {"int8", ServerKind::kNumber},
                                        {"json", ServerKind::kText, false, false},
                                        {"jsonb", ServerKind::kText, false, false},
                                        {"name", ServerKind::kText, false, false},
                                        {"numeric", ServerKind::kNumber},
                                        {"oid", ServerKind::kNumber},
                                        {"text", ServerKind::kText},
                                        {"time", ServerKind::kTime},
                                        {"timestamp", ServerKind::kDateTime},
                                        {"timestamptz", ServerKind::kZonedDateTime},
                                        {"timetz", ServerKind::kTime},
                                        {"uuid", ServerKind::kText, false, false},
                                        {"varchar", ServerKind::kText}};

using Types = std::map<std::string, PostgresType>;

/// The types of these numbers, and those that they are made of.
Types typesOf(const RowsOf& rowsOf, std::vector<std::string> wanted) {
  Types types;
  while (!wanted.empty()) {
    std::sort(wanted.begin(), wanted.end());
    wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    const auto rows = rowsOf(
        fmt::format("SELECT CAST(oid AS TEXT), CAST(typname AS TEXT), CAST(typtype AS TEXT), "
                    "CAST(typbasetype AS TEXT) FROM pg_catalog.pg_type WHERE oid IN ({})",
                    fmt::join(wanted, ", ")));
    wanted.clear();
    for (const auto& row : rows) {
      types[row[0]] = {row[1], row[2], row[3]};
      if (row[2] == "d" && types.count(row[3]) == 0) wanted.push_back(row[3]);
    }
  }
  return types;
}

std::vector<std::string> typeNumbers(const RowsOf& rowsOf, const std::string& relation,
                                     const std::vector<ServerColumn>& columns) {
  std::vector<std::string> numbers;
  for (const ServerColumn& column : columns) {
    numbers.push_back(
        fmt::format("CAST(CAST(pg_typeof(relation.{}) AS OID) AS TEXT)", column.quoted));
  }
  const auto rows = rowsOf(fmt::format(
      "SELECT {} FROM (SELECT 1) AS one LEFT JOIN (SELECT * FROM {} WHERE 1 = 0) AS relation "
      "ON 1 = 1",
      fmt::join(numbers, ", "), relation));
  return rows.front();
}

bool hasOddCollations(const RowsOf& rowsOf, const std::string& version) {
  int major = 0;
  std::from_chars(version.data(), version.data() + version.size(), major);
  if (major < kFirstWithOddCollations) return false;
  return rowsOf(
             "SELECT CAST(COUNT(*) AS TEXT) FROM pg_catalog.pg_collation WHERE NOT "
             "collisdeterministic")
             .front()
             .front() != "0";
}

/// 'a','b''c' as a list.
std::vector<std::string> listed(std::string_view text) {
  std::vector<std::string> values;
  for (size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\'') continue;
    std::string value;
    for (++at; at < text.size(); ++at) {
      if (text[at] == '\'' && (at + 1 == text.size() || text[at + 1] != '\'')) break;
      if (text[at] == '\'') ++at;
      value.push_back(text[at]);
    }
    values.push_back(std::move(value));
  }
  return values;
}

void takePostgresType(const RowsOf& rowsOf, const Types& types, std::string number,
                      bool oddCollations, ServerColumn& column) {
  column.kind = ServerKind::kUnusable;
  column.floating = false;
  column.inMemory = false;
  auto found = types.find(number);
  while (found != types.end() && found->second.category == "d") {
    number = found->second.base;
    found = types.find(number);
  }
  if (found == types.end()) return;
  column.typeName = found->second.name;
  if (found->second.category == "e") {
    column.kind = ServerKind::kEnumeration;
    for (const auto& row :
         rowsOf(fmt::format("SELECT CAST(enumlabel AS TEXT) FROM pg_catalog.pg_enum WHERE "
                            "enumtypid = {} ORDER BY enumsortorder",
                            number))) {
      column.categories.push_back(row.front());
    }
    return;
  }
  const auto* known =
      std::find_if(std::begin(kPostgresTypes), std::end(kPostgresTypes),
                   [&](const KnownType& type) { return type.name == column.typeName; });
  if (known == std::end(kPostgresTypes)) return;
  column.kind = known->kind;
  column.floating = known->floating;
  column.plainText = known->plainText && !oddCollations;
}

}  // namespace

std::string literal(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

void lookPostgresTypesUp(const RowsOf& rowsOf, const std::string& relation,
                         const std::string& version, std::vector<ServerColumn>& columns) {
  if (columns.empty()) return;
  const std::vector<std::string> numbers = typeNumbers(rowsOf, relation, columns);
  const Types types = typesOf(rowsOf, numbers);
  const bool oddCollations = hasOddCollations(rowsOf, version);
  for (size_t i = 0; i < columns.size(); ++i) {
    takePostgresType(rowsOf, types, numbers[i], oddCollations, columns[i]);
  }
}

void lookMariaTypesUp(const RowsOf& rowsOf, const std::string& schema, const std::string& table,
                      std::vector<ServerColumn>& columns) {
  const auto rows = rowsOf(fmt::format(
      "SELECT COLUMN_NAME, COLUMN_TYPE FROM information_schema.COLUMNS WHERE (DATA_TYPE = 'enum' "
      "OR COLUMN_TYPE = 'tinyint(1)') AND TABLE_SCHEMA = {} AND TABLE_NAME = {}",
      schema.empty() ? "DATABASE()" : literal(schema), literal(table)));
  for (const auto& row : rows) {
    for (ServerColumn& column : columns) {
      if (column.name != row[0]) continue;
      const bool isEnumeration = row[1].starts_with("enum");
      column.kind = isEnumeration ? ServerKind::kEnumeration : ServerKind::kZeroOne;
      if (isEnumeration) column.categories = listed(row[1]);
    }
  }
}

}  // namespace workbench
