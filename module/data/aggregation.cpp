#include "module/data/aggregation.h"

#include <cstddef>

namespace proportions {
namespace {

void listValues(const std::vector<ValueSet>& sets, std::vector<ValueList>& lists) {
  lists.assign(sets.size(), {});
  for (size_t i = 0; i < sets.size(); ++i) lists[i].assign(sets[i].begin(), sets[i].end());
}

}  // namespace

void sortAggregation(PRPAggregation& store) {
  listValues(store.firstSets, store.firstLists);
  listValues(store.secondSets, store.secondLists);
}

}  // namespace proportions
