/// The two-by-two table of pairs, and the variances that follow from it.
#pragma once

#include "module/math/sample.h"
#include "module/model/paired_record.h"

namespace proportions::paired {

/// a both successes, b only the first, c only the second, d neither.
struct Counts {
  double a;
  double b;
  double c;
  double d;

  double total() const { return a + b + c + d; }
  Sample first() const { return {a + b, c + d, total()}; }
  Sample second() const { return {a + c, b + d, total()}; }
  /// The smaller discordant count, as a whole number.
  double least() const;
  /// p1 - p2
  double difference() const { return (b - c) / total(); }
  /// (b + c) / N - ((b - c) / N)², N times the variance of the difference. Multiplied out its terms
  /// are all positive, so that it keeps its digits when nearly all pairs are discordant one way.
  double spread() const;
  /// The variance of the difference at the estimates.
  double variance() const { return spread() / total(); }
  /// b + c - (b - c)² / N, that of b - c.
  double countVariance() const { return spread() * total(); }
  /// The variance of the difference under equal proportions.
  double nullVariance() const { return (b / total() + c / total()) / total(); }
  /// The table in another unit.
  Counts times(double unit) const { return {unit * a, unit * b, unit * c, unit * d}; }
  /// The table with `add` more in both discordant cells and two pairs more in all.
  Counts plus(double add) const { return {a + (1.0 - add), b + add, c + add, d + (1.0 - add)}; }
};

inline Counts countsOf(const PropZPairSamp& record) {
  return {record._n11, record._n10, record._n01, record._n00};
}

}  // namespace proportions::paired
