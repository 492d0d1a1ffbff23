/// Drawing cases with replacement when all that is known is how many there are of each kind.
#pragma once

#include <cstdint>
#include <vector>

#include "workbench/resampling/random_bits.h"

namespace workbench {

/// One draw from the binomial distribution with n trials, 0 <= n <= 2^53, and success probability p
/// in [0, 1]. The expectation of the rarer outcome decides: below 10 by inversion, else by
/// Hormann's transformed rejection BTRS (1993, J. Stat. Comput. Simul. 46:101-110). Uses nothing
/// but the arithmetic that IEEE 754 fixes, so that every machine draws the same.
int64_t drawBinomial(int64_t n, double p, RandomStream& random);

/// How often each kind comes up when as many cases are drawn with replacement as there are:
/// `counts` gives the cases of each kind, their sum at most 2^53. One binomial draw after the
/// other, each of those that remain, with the kind's share of the cases of this and all later
/// kinds.
void drawMultinomial(const std::vector<int64_t>& counts, RandomStream& random,
                     std::vector<int64_t>& drawn);

}  // namespace workbench
