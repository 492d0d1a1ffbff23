/// Drawing cases with replacement when all that is known is how many there are of each kind.
#pragma once

#include <cstdint>
#include <vector>

#include "workbench/resampling/random_bits.h"

namespace workbench {

/// Draws from binomial distributions of one success probability p in [0, 1]. The expectation of the
/// rarer outcome decides: below 10 by inversion, else by Hormann's transformed rejection BTRS
/// (1993, J. Stat. Comput. Simul. 46:101-110). Uses nothing but the arithmetic that IEEE 754 fixes,
/// so that every machine draws the same.
class BinomialDraw {
 public:
  explicit BinomialDraw(double p);
  /// One draw with n trials, 0 <= n <= 2^53.
  int64_t operator()(int64_t n, RandomStream& random) const;

 private:
  int64_t byInversion(int64_t n, RandomStream& random) const;
  int64_t byRejection(int64_t n, RandomStream& random) const;
  bool isBelowDensity(double n, double scaled, double k) const;

  bool isFlipped_;  ///< failures are the rarer outcome, and are drawn
  bool isCertain_;  ///< the rarer outcome never comes
  double p_;        ///< of the rarer outcome
  double rest_;     ///< 1 - p_
  double odds_;
  double logOfRest_;
};

/// How often each kind comes up when as many cases are drawn with replacement as there are. One
/// binomial draw after the other, each of those that remain, with the kind's share of the cases of
/// this and all later kinds.
class Multinomial {
 public:
  /// The cases of each kind, their sum at most 2^53.
  explicit Multinomial(const std::vector<int64_t>& counts);
  /// Draws a sample from each of the streams; `drawn` becomes the kinds' numbers in each sample.
  void draw(std::vector<RandomStream>& streams, std::vector<std::vector<int64_t>>& drawn) const;

 private:
  int64_t cases_ = 0;
  std::vector<BinomialDraw> draws_;  ///< by kind
};

}  // namespace workbench
