#include "workbench/odbc/table_choice.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "workbench/text/nearest.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kMostShown = 20;

/// Where SQLTables puts things.
enum TablesColumn : size_t { kCatalogue, kSchema, kName, kType };

std::string textOf(const ServerStatement& statement, size_t column) {
  return statement.isNull(column) ? std::string() : std::string(statement.text(column));
}

std::string listOf(std::vector<std::string> names) {
  const size_t all = names.size();
  if (all > kMostShown) names.resize(kMostShown);
  return fmt::format("{}{}", fmt::join(names, ", "),
                     all > kMostShown ? fmt::format(" and {} more", all - kMostShown) : "");
}

}  // namespace

std::vector<std::string> ServerTable::parts() const {
  if (!schema.empty()) return {schema, name};
  if (!catalogue.empty()) return {catalogue, name};
  return {name};
}

std::string ServerTable::shown() const {
  const std::string& front = schema.empty() ? catalogue : schema;
  return front.empty() ? name : front + "." + name;
}

std::vector<ServerTable> readTables(ServerStatement& statement) {
  std::vector<ServerTable> tables;
  while (statement.fetch()) {
    const std::string type = foldCase(statement.text(kType));
    if (type.find("index") != std::string::npos) continue;
    tables.push_back({textOf(statement, kCatalogue), textOf(statement, kSchema),
                      textOf(statement, kName), type.find("system") != std::string::npos});
  }
  return tables;
}

std::vector<std::string> namedParts(const std::string& name) {
  std::vector<std::string> parts;
  for (size_t start = 0; start <= name.size();) {
    const size_t end = std::min(name.find('.', start), name.size());
    parts.push_back(name.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

const ServerTable& chooseTable(const std::vector<ServerTable>& tables, const std::string& label,
                               const std::optional<std::string>& wanted) {
  std::vector<const ServerTable*> ofUsers;
  std::vector<std::string> shown;
  for (const ServerTable& table : tables) {
    if (table.ofSystem) continue;
    ofUsers.push_back(&table);
    shown.push_back(table.shown());
  }
  if (!wanted) {
    if (ofUsers.size() == 1) return *ofUsers.front();
    throw DataError(
        ofUsers.empty()
            ? fmt::format("{}: the server shows no table; name one with --table.", label)
            : fmt::format("{}: the server has several tables; name one with --table: {}.", label,
                          listOf(std::move(shown))));
  }
  for (const bool exact : {true, false}) {
    for (const ServerTable& table : tables) {
      for (const std::string& name : {table.shown(), table.name}) {
        if (exact ? name == *wanted : foldCase(name) == foldCase(*wanted)) return table;
      }
    }
  }
  std::vector<std::string> candidates = shown;
  for (const ServerTable* table : ofUsers) candidates.push_back(table->name);
  const std::string guess = nearest(*wanted, candidates);
  throw DataError(fmt::format("{}: there is no table {}.{} The server has: {}.", label, *wanted,
                              guess.empty() ? "" : " Did you mean " + guess + "?",
                              listOf(std::move(shown))));
}

}  // namespace workbench
