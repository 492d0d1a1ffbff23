#include "module/independent/estimates.h"

#include <cmath>

#include "module/independent/counts.h"

namespace proportions::independent {

bool setFlags(PropZIndSamp& record) {
  const Counts counts = countsOf(record);
  record.goodData =
      record.numObservations > 0.0 && record.numTrials1 > 0.0 && record.numTrials2 > 0.0;
  if (record.goodData) {
    record.completeData = counts.first.hasBothOutcomes() || counts.second.hasBothOutcomes();
  }
  return record.goodData;
}

void estimate(PropZIndSamp& record) {
  const Counts counts = countsOf(record);
  record.populationProportion1 = counts.first.p();
  record.populationProportion2 = counts.second.p();
  record.estimatedDifference = counts.difference();
  record.ase1 = std::sqrt(counts.first.variance());
  record.ase2 = std::sqrt(counts.second.variance());
  record._aseDiff0 = std::sqrt(counts.pooledVariance());
  record._aseDiff1 = std::sqrt(counts.variance());
}

}  // namespace proportions::independent
