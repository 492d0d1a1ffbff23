/// Reference values gathered across the split groups of a run, for tables that the groups share.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/data_source.h"

namespace proportions {

/// One value of either kind.
struct VarValue {
  bool isString = false;
  double numericValue = kSystemMissing;
  std::string stringValue;

  static VarValue number(double value) { return {false, value, {}}; }
  static VarValue text(std::string value) { return {true, kSystemMissing, std::move(value)}; }
};

/// Strings by the host's collation over the longer of the two lengths; the missing value, then
/// numbers ascending, then NaN, so that the order is a strict one of all doubles. Two values of
/// different kinds are never compared.
struct VarValueLess {
  bool operator()(const VarValue& a, const VarValue& b) const;
};

/// Distinct values of one variable: gathered while the groups are read, listed in their order once
/// sorted.
class GatheredValues {
 public:
  void insert(VarValue value) { distinct_.insert(std::move(value)); }
  void sort() { list_.assign(distinct_.begin(), distinct_.end()); }
  const std::vector<VarValue>& list() const { return list_; }

 private:
  std::set<VarValue, VarValueLess> distinct_;
  std::vector<VarValue> list_;
};

/// One per run. The first split group that needs it initialises it.
struct PRPAggregation {
  bool initialised = false;
  std::vector<GatheredValues> first;   ///< one per variable of the first list
  std::vector<GatheredValues> second;  ///< one per variable of the second list
  GatheredValues midPoints;            ///< of the grouping variable
  /// Where the base groups of resampled data stand, by their user split values; null without user
  /// splits.
  std::unique_ptr<ObsVecMap> splitMap;
  std::vector<int32_t> keyWidths;
};

/// Sorts all gathered values. Called once, after all first passes.
void sortAggregation(PRPAggregation& store);

}  // namespace proportions
