#include <fmt/format.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include "workbench/engine/read_problem.h"
#include "workbench/engine/relation.h"
#include "workbench/text/nearest.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

struct TableName {
  std::string schema;
  std::string name;
  std::string shown() const { return schema == "main" ? name : schema + "." + name; }
  std::string sql() const { return quotedName(schema) + "." + quotedName(name); }
};

std::vector<TableName> tablesOf(Database& database) {
  Query query(database,
              "SELECT schema_name, table_name FROM duckdb_tables() WHERE NOT internal AND NOT "
              "temporary UNION ALL SELECT schema_name, view_name FROM duckdb_views() WHERE NOT "
              "internal AND NOT temporary ORDER BY 1, 2");
  std::vector<TableName> tables;
  while (const Chunk chunk = query.fetch()) {
    const auto* schemas = chunk.data<duckdb_string_t>(0);
    const auto* names = chunk.data<duckdb_string_t>(1);
    for (size_t row = 0; row < chunk.size(); ++row) {
      tables.push_back({std::string(textOf(schemas[row])), std::string(textOf(names[row]))});
    }
  }
  return tables;
}

TableName chooseTable(const std::vector<TableName>& tables, const std::string& label,
                      const std::optional<std::string>& wanted) {
  std::vector<std::string> shown;
  for (const TableName& table : tables) shown.push_back(table.shown());
  if (tables.empty()) throw DataError(fmt::format("{}: the database holds no table.", label));
  if (!wanted) {
    if (tables.size() == 1) return tables.front();
    throw DataError(fmt::format("{}: the database holds several tables; name one with --table: {}.",
                                label, fmt::join(shown, ", ")));
  }
  for (const bool exact : {true, false}) {
    for (size_t i = 0; i < tables.size(); ++i) {
      if (exact ? shown[i] == *wanted : foldCase(shown[i]) == foldCase(*wanted)) return tables[i];
    }
  }
  const std::string guess = nearest(*wanted, shown);
  throw DataError(fmt::format("{}: there is no table {}.{} The database holds: {}.", label, *wanted,
                              guess.empty() ? "" : " Did you mean " + guess + "?",
                              fmt::join(shown, ", ")));
}

}  // namespace

std::unique_ptr<Relation> openDatabase(const std::string& file, const std::string& label,
                                       const std::optional<std::string>& query,
                                       const std::optional<std::string>& table,
                                       const std::atomic<bool>* interrupted) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    throw DataError(fmt::format("{}: there is no such database file.", file));
  }
  auto relation = std::make_unique<Relation>(label, interrupted);
  relation->watchFile(file, label);
  try {
    relation->engine().startOn(file);
    if (query) {
      relation->takeQuery(*query);
      return relation;
    }
    const TableName chosen = chooseTable(tablesOf(relation->database()), label, table);
    relation->take(chosen.sql(), label);
  } catch (const EngineError& problem) {
    throw DataError(readProblem(problem.what(), label));
  }
  std::vector<std::string> names;
  for (const RelationColumn& column : relation->columns()) names.push_back(column.name);
  refuseBadNames(names, label);
  return relation;
}

}  // namespace workbench
