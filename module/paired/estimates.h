/// Margins and estimates of a pair of variables.
#pragma once

#include "module/model/paired_record.h"

namespace proportions::paired {

/// Sets the margins and the number of observations from the four cells.
void addMargins(PropZPairSamp& record);

/// Sets the two flags; a record without observations keeps its completeData. True when it has
/// observations.
bool setFlags(PropZPairSamp& record);

/// Sets the derived fields of a record with observations.
void estimate(PropZPairSamp& record);

}  // namespace proportions::paired
