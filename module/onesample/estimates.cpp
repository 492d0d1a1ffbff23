#include "module/onesample/estimates.h"

#include <cmath>

#include "module/math/arithmetic.h"
#include "module/onesample/counts.h"

namespace proportions::onesample {

bool setFlags(PropZOneSamp& record) {
  record.goodData = record.numTrials > 0.0;
  if (record.goodData) record.completeData = countsOf(record).hasBothOutcomes();
  return record.goodData;
}

void estimate(PropZOneSamp& record, double testValue) {
  const Counts counts = countsOf(record);
  record.populationProportion = counts.p();
  record.estimatedDifference = deviation(counts.x, counts.n, testValue) / counts.n;
  record._aseDiff0 = std::sqrt(nullVariance(counts, testValue));
  record._aseDiff1 = std::sqrt(counts.variance());
}

}  // namespace proportions::onesample
