/// Counts and estimates of one test variable in the one-sample design.
#pragma once

#include <cstdint>

#include "host/constants.h"

namespace proportions {

/// Counts are sums of whole case weights. The derived fields are written only when there are
/// trials.
struct PropZOneSamp {
  int32_t localVarIndex = -1;  ///< position in the list of test variables
  double numSuccesses = 0.0;
  double numFailures = 0.0;
  double numTrials = 0.0;
  double populationProportion = kSystemMissing;
  double estimatedDifference = kSystemMissing;  ///< proportion less test value
  double _aseDiff0 = kSystemMissing;            ///< standard error under the null hypothesis
  double _aseDiff1 = kSystemMissing;            ///< standard error at the estimate
  bool goodData = true;                         ///< there are trials
  bool completeData = true;                     ///< both outcomes were seen
};

}  // namespace proportions
