/// Counts and estimates of one test variable in two independent groups.
#pragma once

#include <cstdint>

#include "host/constants.h"

namespace proportions {

/// Group 1 is side 0 of the grouping, group 2 side 1. Derived fields are written only for good
/// records.
struct PropZIndSamp {
  int32_t localVarIndex = -1;  ///< position in the list of test variables
  double numSuccesses1 = 0.0;
  double numFailures1 = 0.0;
  double numTrials1 = 0.0;
  double numSuccesses2 = 0.0;
  double numFailures2 = 0.0;
  double numTrials2 = 0.0;
  double numObservations = 0.0;
  double populationProportion1 = kSystemMissing;
  double populationProportion2 = kSystemMissing;
  double estimatedDifference = kSystemMissing;
  double ase1 = kSystemMissing;
  double ase2 = kSystemMissing;
  double _aseDiff0 =
      kSystemMissing;  ///< standard error of the difference with the pooled proportion
  double _aseDiff1 = kSystemMissing;  ///< the same at the estimates
  bool goodData = true;               ///< both groups have trials
  bool completeData = true;           ///< one group at least has both outcomes
};

}  // namespace proportions
