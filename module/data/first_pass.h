/// The first pass over a split group: it makes the group's records, collects extremes and counts
/// cases.
#pragma once

#include "host/data_source.h"
#include "module/model/algorithm.h"
#include "module/model/gathered_values.h"

namespace proportions {

/// Runs the first pass on the group at which the iterator stands. False when there was no case left
/// to read, or when the group's sample number is invalid (reported).
bool firstPass(PRPAlgorithm& analysis, ProcDSIterator& iterator, PRPAggregation& store);

/// Reads the whole split group through. False as for firstPass.
bool readGroup(PRPAlgorithm& analysis, ProcDSIterator& iterator);

}  // namespace proportions
