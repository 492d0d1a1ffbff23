#include "module/data/resampling.h"

#include <cmath>
#include <cstddef>
#include <map>

#include "module/model/algorithm.h"
#include "module/model/texts.h"

namespace proportions {
namespace {

/// List position of a resample to list position of its base group.
using BaseGroups = std::map<size_t, size_t>;

void insertBaseGroups(const std::vector<PRPAlgorithm*>& groups, ObsVecMap& map) {
  for (size_t i = 0; i < groups.size(); ++i) {
    const PRPAlgorithm& group = *groups[i];
    if (group.poolingSampleIndex != 0 || group.splitKey.empty()) continue;
    if (map.Contains(group.splitKey.data()) != nullptr) continue;
    *map.Insert(group.splitKey.data()) = static_cast<double>(i);
  }
}

bool findBaseGroups(const std::vector<PRPAlgorithm*>& groups, ObsVecMap& map, BaseGroups& bases) {
  for (size_t i = 0; i < groups.size(); ++i) {
    PRPAlgorithm& group = *groups[i];
    if (group.poolingSampleIndex == 0 || group.splitKey.empty()) continue;
    const double* cell = map.Contains(group.splitKey.data());
    if (cell == nullptr) {
      group.messages->GenericError(group.bootstrapping ? texts::kBootstrapInconsistent
                                                       : texts::kImputationInconsistent);
      return false;
    }
    bases[i] = static_cast<size_t>(std::floor(*cell + 0.5));
  }
  return true;
}

void copyReferences(const VarCatInfo& from, VarCatInfo& to) {
  to.minValue = from.minValue;
  to.maxValue = from.maxValue;
  to.midPoint = from.midPoint;
  to.minString = from.minString;
  to.maxString = from.maxString;
  to.extremesKnown = from.extremesKnown;
}

void copyReferences(const PRPAlgorithm& base, PRPAlgorithm& group) {
  if (group.needSuccessAggregation) {
    for (size_t i = 0; i < group.testVarCats.size(); ++i) {
      copyReferences(*base.testVarCats[i], *group.testVarCats[i]);
    }
    for (size_t i = 0; i < group.secondVarCats.size(); ++i) {
      copyReferences(*base.secondVarCats[i], *group.secondVarCats[i]);
    }
  }
  if (group.needSelectAggregation && group.groupCats) {
    copyReferences(*base.groupCats, *group.groupCats);
  }
}

}  // namespace

bool checkResamples(std::vector<PRPAlgorithm*> groups) {
  if (groups.size() < 2) return true;
  const PRPAlgorithm& first = *groups.front();
  if (first.poolingVarIndex < 0 || first.aggregation == nullptr) return true;

  BaseGroups bases;
  if (ObsVecMap* map = first.aggregation->splitMap.get()) {
    insertBaseGroups(groups, *map);
    if (!findBaseGroups(groups, *map, bases)) return false;
  } else {
    for (size_t i = 0; i < groups.size(); ++i) bases[i] = 0;
  }
  for (const auto& [resample, base] : bases) {
    if (groups[resample]->poolingSampleIndex != 0) copyReferences(*groups[base], *groups[resample]);
  }
  return true;
}

}  // namespace proportions
