#include "module/data/var_value.h"

#include <algorithm>

#include "host/strings.h"

namespace proportions {

bool VarValueLess::operator()(const VarValue& a, const VarValue& b) const {
  if (a.isString && b.isString) {
    const size_t n = std::max(a.stringValue.size(), b.stringValue.size());
    return ZELKMBstrncoll_A(a.stringValue.c_str(), b.stringValue.c_str(), n) < 0;
  }
  // The missing value is the lowest double, so plain order puts it first.
  return a.numericValue < b.numericValue;
}

}  // namespace proportions
