/// The paired analysis of a split group.
#pragma once

#include "host/data_source.h"
#include "module/model/algorithm.h"

namespace proportions::paired {

/// Cross-counts the group's cases, warns about pairs without observations and adds every pair's
/// rows to the tables. True when at least one pair has observations; otherwise no table is touched
/// and the object's goodData becomes false.
bool runPairedSamples(PRPAlgorithm& analysis, ProcDSIterator& iterator);

}  // namespace proportions::paired
