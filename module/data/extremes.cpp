#include "module/data/extremes.h"

#include <algorithm>

#include "host/strings.h"

namespace proportions {
namespace {

void extendExtremes(double value, VarCatInfo& cats) {
  if (!cats.hasValidValue) {
    cats.minValue = cats.maxValue = value;
    cats.hasValidValue = cats.extremesKnown = true;
    return;
  }
  if (value < cats.minValue) cats.minValue = value;
  if (value > cats.maxValue) cats.maxValue = value;
}

inline void collectNumber(double value, VarCatInfo& cats) {
  // Most values lie between those seen before; none does before the first, both ends being missing.
  if (value >= cats.minValue && value <= cats.maxValue) [[likely]] {
    return;
  }
  extendExtremes(value, cats);
}

bool collatesBefore(const std::string& a, const std::string& b) {
  const size_t n = std::max(a.size(), b.size());
  return n > 0 && ZELKMBstrncoll_A(a.c_str(), b.c_str(), n) < 0;
}

void collectString(const std::string& value, VarCatInfo& cats) {
  if (!cats.hasValidValue) {
    cats.minString = cats.maxString = value;
    cats.hasValidValue = cats.extremesKnown = true;
    return;
  }
  if (collatesBefore(value, cats.minString)) cats.minString = value;
  if (collatesBefore(cats.maxString, value)) cats.maxString = value;
}

/// The case is a copy, which stays in registers.
void collectPlain(const Case data, const CaseVariables& list) {
  const CaseVariable* const end = list.variables.data() + list.variables.size();
  for (const CaseVariable* variable = list.variables.data(); variable != end; ++variable) {
    const double value = data.Number(variable->index);
    if (!IsSystemMissing(value)) collectNumber(value, *variable->cats);
  }
}

}  // namespace

[[gnu::noinline]] void ExtremesCollector::collectEach(const Case& data, const CaseVariables& list) {
  for (const CaseVariable& variable : list.variables) {
    if (variable.isString) {
      const std::string* text = values_.fetchString(data, variable);
      if (text != nullptr) collectString(*text, *variable.cats);
    } else {
      const auto [value, missing] = values_.fetchNumeric(data, variable);
      if (!missing) collectNumber(value, *variable.cats);
    }
  }
}

inline void ExtremesCollector::collectList(const Case& data, const CaseVariables& list) {
  if (list.variables.empty()) return;
  list.plain ? collectPlain(data, list) : collectEach(data, list);
}

void ExtremesCollector::collect(const Case& data) {
  collectList(data, values_.group());
  collectList(data, values_.first());
  collectList(data, values_.second());
}

}  // namespace proportions
