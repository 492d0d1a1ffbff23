/// What a case adds to the sums of successes, failures and trials, by its code.
#pragma once

#include "module/model/codes.h"

namespace proportions {

/// Looked up rather than branched on: the processor would mispredict half of all branches on
/// outcomes.
class OutcomeWeights {
 public:
  /// To be called with each case's weight, which most often is that of the case before.
  void setWeight(double weight) {
    if (weight == trial_[2]) return;
    success_[2] = failure_[1] = trial_[1] = trial_[2] = weight;
  }

  void add(Code code, double& successes, double& failures, double& trials) const {
    const int position = code - kNotCounted;
    successes += success_[position];
    failures += failure_[position];
    trials += trial_[position];
  }
  double trial(Code code) const { return trial_[code - kNotCounted]; }

 private:
  double success_[3] = {};
  double failure_[3] = {};
  double trial_[3] = {};
};

}  // namespace proportions
