/// Estimates of two independent groups.
#pragma once

#include "module/model/independent_record.h"

namespace proportions::independent {

/// Sets the two flags; a record that is not good keeps its completeData. True when both groups have
/// trials.
bool setFlags(PropZIndSamp& record);

/// Sets the derived fields of a record with trials in both groups.
void estimate(PropZIndSamp& record);

}  // namespace proportions::independent
