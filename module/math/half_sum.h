/// Sums of binomial(n, 1/2) probabilities.
#pragma once

namespace proportions {

/// P(X < last) + lastWeight·P(X = last) for X binomial(n, 1/2), last <= n / 2; missing as soon as
/// the host cannot give a term.
double halfSum(double last, double n, double lastWeight);

/// Below this many terms the sums leave none out.
inline constexpr double kFullSumTerms = 2048.0;
/// From this many terms on, those left out not counted, the sum is asked of the host as a whole.
/// Ten billion discordant cases need half of them.
inline constexpr double kMostTerms = 1048576.0;

/// The first term of the sum for k = 0..last that can have a part in the last bit of the sum; 0 for
/// short sums.
double firstTermThatCounts(double last, double n);

}  // namespace proportions
