/// The keys of the procedure's tables, columns and labels that the host gives a meaning beyond
/// their text: the one place where the host knows what a result is called.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace workbench {

enum class Design : uint8_t { kOneSample, kPaired, kIndependent };
enum class ResultKind : uint8_t { kStatistics, kIntervals, kTests };

/// What a table of results is about.
struct TableKind {
  Design design;
  ResultKind kind;
};

/// By the key of a table's title; nothing for a table that is not known.
std::optional<TableKind> tableKindOf(std::string_view titleKey);

/// What a column of a result shows.
enum class Quantity : uint8_t {
  kSuccesses,
  kTrials,
  kProportion,
  kDifference,  ///< of two proportions, or of a proportion and the test value
  kStandardError,
  kZ,
  kOneSidedP,
  kTwoSidedP,
  kLower,
  kUpper
};
inline constexpr size_t kQuantityCount = 10;

/// By the key of a column's label; nothing for any other.
std::optional<Quantity> quantityOf(std::string_view columnKey);

/// True for the group of an interval's bounds, whose number is the confidence level in percent.
bool isIntervalGroup(std::string_view groupKey);

/// What a success or a side of a grouping is, shown without its variable: "", ">= " or "< ", which
/// stands before the values.
std::string_view relationOf(std::string_view labelKey);

}  // namespace workbench
