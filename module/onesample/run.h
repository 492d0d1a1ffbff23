/// The one-sample analysis of a split group.
#pragma once

#include "host/data_source.h"
#include "module/model/algorithm.h"

namespace proportions::onesample {

/// Counts the group's cases, warns about variables without trials and adds every variable's rows to
/// the tables. True when at least one variable has trials; otherwise no table is touched and the
/// object's goodData becomes false.
bool runOneSample(PRPAlgorithm& analysis, ProcDSIterator& iterator);

}  // namespace proportions::onesample
