/// Reference values gathered across the split groups of a run, for tables that the groups share.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "host/data_source.h"
#include "module/data/var_value.h"

namespace proportions {

using ValueSet = std::set<VarValue, VarValueLess>;
using ValueList = std::vector<VarValue>;

/// One per run. The first split group that needs it initialises it.
struct PRPAggregation {
  bool initialised = false;
  std::vector<ValueSet> firstSets;  ///< one per variable of the first list
  std::vector<ValueList> firstLists;
  std::vector<ValueSet> secondSets;
  std::vector<ValueList> secondLists;
  /// Midpoints of the grouping variable. A set is in order already, so it serves as the list as
  /// well.
  ValueSet groupSet;
  /// Where the base groups of resampled data stand, by their user split values; null without user
  /// splits.
  std::unique_ptr<ObsVecMap> splitMap;
  std::vector<int32_t> keyWidths;
};

/// Fills the lists from the sets, in order. Called once, after all first passes.
void sortAggregation(PRPAggregation& store);

}  // namespace proportions
