/// What the one-sample methods start from.
#pragma once

#include "module/math/sample.h"
#include "module/model/onesample_record.h"

namespace proportions::onesample {

using Counts = Sample;

inline Counts countsOf(const PropZOneSamp& record) {
  return {record.numSuccesses, record.numFailures, record.numTrials};
}

/// The variance of p under the null hypothesis p = p0.
inline double nullVariance(const Counts& counts, double p0) { return (1.0 - p0) * p0 / counts.n; }

}  // namespace proportions::onesample
