/// The system-missing value, and what stands for "not computed".
#pragma once

#include "host/constants.h"

namespace proportions {

/// The only comparison with the system-missing value.
inline bool isMissing(double value) { return IsSystemMissing(value); }

}  // namespace proportions
