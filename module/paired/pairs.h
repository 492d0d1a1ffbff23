/// The pairs of variables that a paired analysis compares.
#pragma once

#include <vector>

#include "module/paired/record.h"

namespace proportions {

struct PRPAlgorithm;

/// One record in its initial state per pair, numbered from 0: every two positions of a single list;
/// every position of the first list with every one of the second, first-list-major; or, for ordered
/// pairs, position by position. A pair of a variable with itself is left out.
std::vector<PropZPairSamp> formPairs(const PRPAlgorithm& analysis);

}  // namespace proportions
