#include "workbench/engine/common_types.h"

#include <fmt/format.h>

#include <algorithm>

#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

bool isSmallWhole(const EngineType& type) {
  switch (type.id) {
    case DUCKDB_TYPE_TINYINT:
    case DUCKDB_TYPE_SMALLINT:
    case DUCKDB_TYPE_INTEGER:
    case DUCKDB_TYPE_UTINYINT:
    case DUCKDB_TYPE_USMALLINT:
    case DUCKDB_TYPE_UINTEGER:
      return true;
    default:
      return false;
  }
}

bool isWhole(const EngineType& type) {
  return isSmallWhole(type) || type.id == DUCKDB_TYPE_BIGINT || type.id == DUCKDB_TYPE_UBIGINT ||
         type.id == DUCKDB_TYPE_HUGEINT || type.id == DUCKDB_TYPE_UHUGEINT;
}

bool isFloating(const EngineType& type) {
  return type.id == DUCKDB_TYPE_FLOAT || type.id == DUCKDB_TYPE_DOUBLE;
}

bool isSame(const EngineType& a, const EngineType& b) {
  return a.id == b.id && a.decimalDigits == b.decimalDigits && a.decimalScale == b.decimalScale &&
         a.categories == b.categories;
}

/// Decimals that the engine puts together without a digit lost.
bool areDecimals(const EngineType& a, const EngineType& b) {
  constexpr int kMostDigits = 38;
  if (a.id != DUCKDB_TYPE_DECIMAL || b.id != DUCKDB_TYPE_DECIMAL) return false;
  const int whole = std::max(a.decimalDigits - a.decimalScale, b.decimalDigits - b.decimalScale);
  return whole + std::max(a.decimalScale, b.decimalScale) <= kMostDigits;
}

/// A number as a double; whole ones that no double holds end the query.
std::string asDouble(const std::string& name, const EngineType& type, const std::string& label) {
  const std::string column = quotedName(name);
  if (isFloating(type) || isSmallWhole(type)) return fmt::format("CAST({} AS DOUBLE)", column);
  return fmt::format(
      "CASE WHEN {0} IS NULL OR {0} BETWEEN -9007199254740992 AND 9007199254740992 THEN CAST({0} "
      "AS DOUBLE) ELSE CAST(error(concat({1}, {0}, {2})) AS DOUBLE) END",
      column, quotedText(fmt::format("{}: {}: ", label, excerpt(name))),
      quotedText(" cannot be held exactly beside the decimals of other files; give all files "
                 "whole numbers, or texts"));
}

}  // namespace

void CommonTypes::add(const std::string& label, const Statement& columns) {
  File& file = files_.emplace_back(File{label, {}});
  for (size_t i = 0; i < columns.columnCount(); ++i) {
    const std::string name = columns.columnName(i);
    const EngineType type = columns.columnType(i);
    file.types[name] = type;
    const auto [at, isNew] = columns_.emplace(name, Common{type, label});
    Common& common = at->second;
    if (isNew || isSame(common.first, type) || areDecimals(common.first, type) ||
        (isWhole(common.first) && isWhole(type))) {
      continue;
    }
    const auto isNumber = [](const EngineType& each) { return isWhole(each) || isFloating(each); };
    if (!isNumber(common.first) || !isNumber(type)) {
      throw DataError(fmt::format(
          "{}: its column {} is of another type than that of {}. Give all files the same types, or "
          "name fewer files.",
          label, excerpt(name), common.firstLabel));
    }
    common.converted = true;
  }
}

bool CommonTypes::mustConvert() const {
  return std::any_of(columns_.begin(), columns_.end(),
                     [](const auto& each) { return each.second.converted; });
}

std::string CommonTypes::selection(size_t file) const {
  std::string list;
  for (const auto& [name, common] : columns_) {
    if (!common.converted) continue;
    list += fmt::format("{}{} AS {}", list.empty() ? "" : ", ",
                        asDouble(name, files_[file].types.at(name), files_[file].label),
                        quotedName(name));
  }
  return list.empty() ? "*" : fmt::format("* REPLACE ({})", list);
}

}  // namespace workbench
