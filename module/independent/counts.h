/// Two independent groups, the difference of their proportions and its variances.
#pragma once

#include "module/math/sample.h"
#include "module/model/independent_record.h"

namespace proportions::independent {

struct Counts {
  Sample first;
  Sample second;

  /// x1·n2 - x2·n1, the difference over 1 / (n1·n2). It and the corrections below are a power of
  /// two smaller where these products would exceed the largest number.
  double crossDifference() const;
  /// What such a cross difference is as a difference of proportions. As long as n1·n2 is exact, it
  /// is rounded once, so that equal differences are equal whatever the counts.
  double perTrials(double cross) const;
  /// p1 - p2 from the counts, so that nearly equal proportions keep the digits of their difference.
  double difference() const;
  /// (1 - p1)·p1 / (n1 - less) + (1 - p2)·p2 / (n2 - less), the variance of the difference at the
  /// estimates.
  double variance(double less) const;
  double variance() const { return variance(0.0); }
  /// (1/n1 + 1/n2)·p̄(1 - p̄), that under equal proportions, with the pooled one.
  double pooledVariance() const;
  /// The continuity corrections as multiples of 1 / (2·n1·n2), in which they and the difference are
  /// whole numbers: (1/n1 + 1/n2) / 2 of the Wald family, and 1 / (2·min(n1, n2)) of Hauck &
  /// Anderson, which needs more than one trial in each group.
  double waldCorrection() const;
  double hauckAndersonCorrection() const;
  bool bothAboveOne() const { return first.n > 1.0 && second.n > 1.0; }
  /// Both groups with that many more of either outcome.
  Counts plus(double each) const { return {first.plus(each, each), second.plus(each, each)}; }
};

inline Counts countsOf(const PropZIndSamp& record) {
  return {{record.numSuccesses1, record.numFailures1, record.numTrials1},
          {record.numSuccesses2, record.numFailures2, record.numTrials2}};
}

}  // namespace proportions::independent
