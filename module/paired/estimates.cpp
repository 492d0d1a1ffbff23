#include "module/paired/estimates.h"

#include <cmath>

#include "module/paired/counts.h"

namespace proportions::paired {
namespace {

/// sqrt((1 - p)·p / successes). The division by the measurement's own successes, not by the
/// observations, is the rule of this design; without successes there is no value.
double measurementError(const Sample& measurement) {
  if (!(measurement.x > 0.0)) return kSystemMissing;
  return std::sqrt(measurement.variance(measurement.x));
}

}  // namespace

void addMargins(PropZPairSamp& record) {
  record._n1p = record._n11 + record._n10;
  record._np1 = record._n11 + record._n01;
  record._n0p = record._n01 + record._n00;
  record._np0 = record._n10 + record._n00;
  record.numObservations = record._n11 + record._n10 + record._n01 + record._n00;
}

bool setFlags(PropZPairSamp& record) {
  record.goodData = record.numObservations > 0.0;
  if (record.goodData) {
    const Counts counts = countsOf(record);
    // The spread is 0 without discordant pairs.
    record.completeData = record._n1p > 0.0 && record._np1 > 0.0 && counts.spread() > 0.0;
  }
  return record.goodData;
}

void estimate(PropZPairSamp& record) {
  const Counts counts = countsOf(record);
  const double n = counts.total();
  record._p11 = counts.a / n;
  record._p10 = counts.b / n;
  record._p01 = counts.c / n;
  record._p00 = counts.d / n;
  record.firstProportion = counts.first().p();
  record.secondProportion = counts.second().p();
  record.estimatedDifference = counts.difference();
  record.firstAse = measurementError(counts.first());
  record.secondAse = measurementError(counts.second());
  record._aseDiff0 = std::sqrt(counts.nullVariance());
  record._aseDiff1 = std::sqrt(counts.variance());
}

}  // namespace proportions::paired
