#include "workbench/results/known_labels.h"

#include <array>
#include <utility>

namespace workbench {
namespace {

template <typename Value, size_t count>
std::optional<Value> find(const std::array<std::pair<std::string_view, Value>, count>& entries,
                          std::string_view key) {
  for (const auto& [known, value] : entries) {
    if (known == key) return value;
  }
  return std::nullopt;
}

using TableEntry = std::pair<std::string_view, TableKind>;
constexpr std::array<TableEntry, 8> kTables{{
    {"One-Sample Proportions Confidence Intervals", {Design::kOneSample, ResultKind::kIntervals}},
    {"One-Sample Proportions Tests", {Design::kOneSample, ResultKind::kTests}},
    {"Paired-Samples Proportions Statistics", {Design::kPaired, ResultKind::kStatistics}},
    {"Paired-Samples Proportions Confidence Intervals", {Design::kPaired, ResultKind::kIntervals}},
    {"Paired-Samples Proportions Tests", {Design::kPaired, ResultKind::kTests}},
    {"Independent-Samples Proportions Group Statistics",
     {Design::kIndependent, ResultKind::kStatistics}},
    {"Independent-Samples Proportions Confidence Intervals",
     {Design::kIndependent, ResultKind::kIntervals}},
    {"Independent-Samples Proportions Tests", {Design::kIndependent, ResultKind::kTests}},
}};

using QuantityEntry = std::pair<std::string_view, Quantity>;
constexpr std::array<QuantityEntry, 11> kColumns{{
    {"Successes", Quantity::kSuccesses},
    {"Trials", Quantity::kTrials},
    {"Proportion", Quantity::kProportion},
    {"Observed - Test Value", Quantity::kDifference},
    {"Difference in Proportions", Quantity::kDifference},
    {"Asymptotic Standard Error", Quantity::kStandardError},
    {"Z", Quantity::kZ},
    {"One-Sided p", Quantity::kOneSidedP},
    {"Two-Sided p", Quantity::kTwoSidedP},
    {"Lower", Quantity::kLower},
    {"Upper", Quantity::kUpper},
}};

}  // namespace

std::optional<TableKind> tableKindOf(std::string_view titleKey) { return find(kTables, titleKey); }

std::optional<Quantity> quantityOf(std::string_view columnKey) { return find(kColumns, columnKey); }

bool isIntervalGroup(std::string_view groupKey) {
  return groupKey == "^1% Confidence Interval" ||
         groupKey == "^1% Confidence Interval of the Difference";
}

std::string_view relationOf(std::string_view labelKey) {
  if (labelKey == "^1 >= ^2" || labelKey == ">= ^1") return ">= ";
  return labelKey == "< ^1" ? "< " : "";
}

}  // namespace workbench
