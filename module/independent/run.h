/// The independent-samples analysis of a split group.
#pragma once

#include "host/data_source.h"
#include "module/model/algorithm.h"

namespace proportions::independent {

/// Counts both sides for every variable, warns about variables without trials on a side and adds
/// every variable's rows to the tables. True when at least one variable has trials on both sides;
/// otherwise no table is touched and the object's goodData becomes false.
bool runIndependentSamples(PRPAlgorithm& analysis, ProcDSIterator& iterator);

}  // namespace proportions::independent
