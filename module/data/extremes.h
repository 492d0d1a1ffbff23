/// The first pass: each variable's smallest and largest value.
#pragma once

#include "module/data/case_values.h"

namespace proportions {

/// Extends the extremes of the variables' category records by a case's values. A plain list of
/// numbers takes the shortest way; bench/classification_bench.cpp measures it.
class ExtremesCollector {
 public:
  explicit ExtremesCollector(CaseValues& values) : values_(values) {}

  void collect(const Case& data);

 private:
  void collectList(const Case& data, const CaseVariables& list);
  void collectEach(const Case& data, const CaseVariables& list);

  CaseValues& values_;
};

}  // namespace proportions
