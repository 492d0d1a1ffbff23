#include "workbench/engine/allowed_plan.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using Json = nlohmann::json;

// Ascending.
constexpr std::string_view kAllowed[] = {"ASOF_JOIN",
                                         "BLOCKWISE_NL_JOIN",
                                         "CHUNK_SCAN",
                                         "COLUMN_DATA_SCAN",
                                         "CROSS_PRODUCT",
                                         "CTE",
                                         "CTE_SCAN",
                                         "DELIM_JOIN",
                                         "DELIM_SCAN",
                                         "DUMMY_SCAN",
                                         "EMPTY_RESULT",
                                         "EXPRESSION_SCAN",
                                         "FILTER",
                                         "GENERATE_SERIES",
                                         "HASH_GROUP_BY",
                                         "HASH_JOIN",
                                         "IE_JOIN",
                                         "INDEX_SCAN",
                                         "INOUT_FUNCTION",
                                         "JSON_EACH",
                                         "JSON_TREE",
                                         "LEFT_DELIM_JOIN",
                                         "LIMIT",
                                         "LIMIT_PERCENT",
                                         "NESTED_LOOP_JOIN",
                                         "ORDER_BY",
                                         "PARQUET_SCAN",
                                         "PARTITIONED_AGGREGATE",
                                         "PERFECT_HASH_GROUP_BY",
                                         "PIECEWISE_MERGE_JOIN",
                                         "PIVOT",
                                         "POSITIONAL_JOIN",
                                         "POSITIONAL_SCAN",
                                         "PROJECTION",
                                         "RANGE",
                                         "READ_PARQUET",
                                         "RECURSIVE_CTE",
                                         "RECURSIVE_CTE_SCAN",
                                         "RECURSIVE_KEY_CTE",
                                         "RECURSIVE_RECURRING_CTE_SCAN",
                                         "REC_CTE",
                                         "REC_CTE_SCAN",
                                         "REPEAT",
                                         "RESERVOIR_SAMPLE",
                                         "RIGHT_DELIM_JOIN",
                                         "SEQ_SCAN",
                                         "SIMPLE_AGGREGATE",
                                         "STREAMING_LIMIT",
                                         "STREAMING_SAMPLE",
                                         "STREAMING_WINDOW",
                                         "TABLE_SCAN",
                                         "TOP_N",
                                         "UNGROUPED_AGGREGATE",
                                         "UNION",
                                         "UNNEST",
                                         "WINDOW"};

/// The operators of a plan; children wait in a list, since a query may nest them as deep as it
/// likes.
std::vector<std::string> operatorsOf(const Json& plan) {
  std::vector<std::string> names;
  std::vector<const Json*> waiting;
  for (const Json& root : plan) waiting.push_back(&root);
  while (!waiting.empty()) {
    const Json& node = *waiting.back();
    waiting.pop_back();
    std::string name = node.at("name").get<std::string>();
    name.erase(name.find_last_not_of(' ') + 1);
    names.push_back(std::move(name));
    for (const Json& child : node.at("children")) waiting.push_back(&child);
  }
  return names;
}

}  // namespace

void refuseForeignOperators(Database& database, const std::string& select,
                            const std::string& place) {
  std::string text;
  Query query(database, "EXPLAIN (FORMAT json) " + select);
  while (const Chunk chunk = query.fetch()) {
    const auto* values = chunk.data<duckdb_string_t>(1);
    for (size_t row = 0; row < chunk.size(); ++row) text += textOf(values[row]);
  }
  for (const std::string& name : operatorsOf(Json::parse(text))) {
    if (std::binary_search(std::begin(kAllowed), std::end(kAllowed), name)) continue;
    std::string shown = name;
    std::transform(shown.begin(), shown.end(), shown.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    throw DataError(fmt::format(
        "{}: a query, and the views that it uses, may only read the data that were named; {} is "
        "something else. Leave it out.",
        place, shown));
  }
}

}  // namespace workbench
