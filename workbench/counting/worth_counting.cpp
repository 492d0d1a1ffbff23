#include "workbench/counting/worth_counting.h"

namespace workbench {
namespace {

/// Counting goes on as long as its table stays small, or meets few new combinations: the share of
/// new ones among the latest cases is what the next cases will have (Good 1953, Biometrika
/// 40:237-264). It ends early when there are many more combinations to come than it will count.
constexpr size_t kFewCombinations = size_t{1} << 16U;
constexpr size_t kSmallTable = size_t{16} << 20U;  // bytes
constexpr size_t kNewOnesThatPay = 4;              // at most one case in that many
constexpr size_t kMostCombinations = size_t{1} << 20U;
constexpr size_t kLatestCases = size_t{1} << 13U;  // the share is taken from at least this many

}  // namespace

bool WorthCounting::stillPays(const CombinationTable& table, size_t cases) {
  cases_ += cases;
  if (cases_ < kLatestCases) return true;
  const size_t newOnes = table.size() - known_;
  const bool few = newOnes * kNewOnesThatPay <= cases_;
  known_ = table.size();
  cases_ = 0;
  if (few) return known_ <= kMostCombinations;
  const bool small = known_ <= kFewCombinations && table.memory() <= kSmallTable;
  return small && table.estimatedSize() <= static_cast<double>(kMostCombinations);
}

}  // namespace workbench
