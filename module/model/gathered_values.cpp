#include "module/model/gathered_values.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "host/strings.h"

namespace proportions {
namespace {

/// -infinity is a number, below which the missing value comes although it is the lowest finite one.
int rank(double value) {
  if (IsSystemMissing(value)) return 0;
  return std::isnan(value) ? 2 : 1;
}

}  // namespace

bool VarValueLess::operator()(const VarValue& a, const VarValue& b) const {
  if (a.isString && b.isString) {
    const size_t n = std::max(a.stringValue.size(), b.stringValue.size());
    return ZELKMBstrncoll_A(a.stringValue.c_str(), b.stringValue.c_str(), n) < 0;
  }
  return std::pair(rank(a.numericValue), a.numericValue) <
         std::pair(rank(b.numericValue), b.numericValue);
}

void sortAggregation(PRPAggregation& store) {
  for (GatheredValues& values : store.first) values.sort();
  for (GatheredValues& values : store.second) values.sort();
  store.midPoints.sort();
}

}  // namespace proportions
