#include "workbench/engine/byte_columns.h"

#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace workbench {
namespace {

/// What asking takes grows with the number of columns, what it saves with that of cases.
constexpr size_t kMostAsked = 256;

bool isLongWhole(const EngineType& type) {
  switch (type.id) {
    case DUCKDB_TYPE_SMALLINT:
    case DUCKDB_TYPE_INTEGER:
    case DUCKDB_TYPE_BIGINT:
    case DUCKDB_TYPE_USMALLINT:
    case DUCKDB_TYPE_UINTEGER:
    case DUCKDB_TYPE_UBIGINT:
      return true;
    default:
      return false;
  }
}

/// The number that follows a word of the statistics: "[Min: 0, Max: 1][Has Null: ...".
std::optional<int64_t> numberAfter(std::string_view word, std::string_view statistics) {
  const size_t at = statistics.find(word);
  if (at == std::string_view::npos) return std::nullopt;
  int64_t number = 0;
  const char* const end = statistics.data() + statistics.size();
  const auto [stop, error] = std::from_chars(statistics.data() + at + word.size(), end, number);
  if (error != std::errc() || stop == end || (*stop != ',' && *stop != ']')) return std::nullopt;
  return number;
}

bool fitsByte(std::string_view statistics) {
  const std::optional<int64_t> least = numberAfter("[Min: ", statistics);
  const std::optional<int64_t> most = numberAfter(", Max: ", statistics);
  return least && most && *least >= std::numeric_limits<int8_t>::min() &&
         *most <= std::numeric_limits<int8_t>::max();
}

}  // namespace

std::vector<bool> fitBytes(Relation& relation, const std::vector<size_t>& columns) {
  std::vector<bool> fit(columns.size(), false);
  if (!relation.hasStatistics() || columns.size() > kMostAsked) return fit;
  std::string list;
  std::vector<size_t> asked;
  for (size_t i = 0; i < columns.size(); ++i) {
    const RelationColumn& column = relation.columns()[columns[i]];
    if (!isLongWhole(column.type)) continue;
    list += fmt::format("{}stats({})", asked.empty() ? "" : ", ", quotedName(column.name));
    asked.push_back(i);
  }
  if (asked.empty()) return fit;
  Query query(relation.database(), fmt::format("SELECT {} FROM {} LIMIT 1", list, relation.sql()));
  const Chunk chunk = query.fetch();
  if (!chunk) return fit;  // no case
  for (size_t i = 0; i < asked.size(); ++i) {
    if (Chunk::isNull(chunk.validity(i), 0)) continue;
    fit[asked[i]] = fitsByte(textOf(chunk.data<duckdb_string_t>(i)[0]));
  }
  return fit;
}

}  // namespace workbench
