/// The one-sample analysis of a split group.
#pragma once

#include "host/data_source.h"
#include "module/driver/algorithm.h"

namespace proportions {

/// Counts the group's cases, warns about variables without trials and adds every variable's rows to
/// the tables. True when at least one variable has trials; otherwise no table is touched and the
/// object's goodData becomes false.
bool runOneSample(PRPAlgorithm& analysis, ProcDSIterator& iterator);

/// The derived fields of a record with trials.
void estimate(PropZOneSamp& record, double testValue);

}  // namespace proportions
