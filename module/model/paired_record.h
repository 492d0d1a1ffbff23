/// The two-by-two table and the estimates of one pair of variables.
#pragma once

#include <cstdint>

#include "host/constants.h"

namespace proportions {

/// In the names of counts and proportions the first digit is the first measurement's outcome, the
/// second digit the second's: 1 success, 0 failure, p either. Derived fields are written only when
/// there are observations.
struct PropZPairSamp {
  int32_t pairIndex = -1;  ///< from 0
  int32_t firstLocalVarIndex = -1;
  int32_t secondLocalVarIndex = -1;  ///< in the second list when there is one, else in the first
  double _n11 = 0.0;
  double _n10 = 0.0;
  double _n01 = 0.0;
  double _n00 = 0.0;
  double _n1p = 0.0;
  double _np1 = 0.0;
  double _n0p = 0.0;
  double _np0 = 0.0;
  double numObservations = 0.0;
  double _p11 = kSystemMissing;
  double _p10 = kSystemMissing;
  double _p01 = kSystemMissing;
  double _p00 = kSystemMissing;
  double firstProportion = kSystemMissing;
  double secondProportion = kSystemMissing;
  double estimatedDifference = kSystemMissing;
  double firstAse = kSystemMissing;
  double secondAse = kSystemMissing;
  double _aseDiff0 = kSystemMissing;  ///< standard error of the difference under equal proportions
  double _aseDiff1 = kSystemMissing;  ///< the same at the estimates
  bool goodData = true;               ///< there are observations
  bool completeData = true;  ///< discordant cases, successes of both, and a positive variance
};

}  // namespace proportions
