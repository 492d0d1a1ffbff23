/// The counts of one binomial sample.
#pragma once

namespace proportions {

/// x successes and f failures in n = x + f > 0 trials. 1 - p is taken as f / n throughout: the same
/// quantity, with all its digits when p is close to 1.
struct Sample {
  double x;
  double f;
  double n;

  double p() const { return x / n; }
  double q() const { return f / n; }
  /// p(1 - p) / n, the variance of p; with `divisor` in place of the last n where a method has it.
  double variance(double divisor) const { return q() * p() / divisor; }
  double variance() const { return variance(n); }
  bool hasBothOutcomes() const { return x > 0.0 && f > 0.0; }
  /// The sample with that many outcomes more.
  Sample plus(double successes, double failures) const {
    return {x + successes, f + failures, n + successes + failures};
  }
};

}  // namespace proportions
