/// Estimates of one proportion.
#pragma once

#include "module/model/onesample_record.h"

namespace proportions::onesample {

/// Sets the two flags; a record without trials keeps its completeData. True when it has trials.
bool setFlags(PropZOneSamp& record);

/// Sets the derived fields of a record with trials.
void estimate(PropZOneSamp& record, double testValue);

}  // namespace proportions::onesample
