/// What bootstrap samples tell about a statistic.
#pragma once

#include <cstdint>
#include <vector>

namespace workbench {

/// A value of the statistic with one case left out, and how many cases give it.
struct LeftOut {
  double value = 0;
  double cases = 0;
};

/// kSystemMissing stands for what cannot be computed.
struct BootstrapSummary {
  double statistic = 0;
  double bias = 0;           ///< mean of the samples less the statistic
  double standardError = 0;  ///< with the divisor N - 1
  double percentileLower = 0, percentileUpper = 0;
  double bcaLower = 0, bcaUpper = 0;
  int64_t computed = 0;  ///< samples that gave a value
};

/// The quantile of type 6 (Hyndman and Fan 1996, The American Statistician 50:361-365) of ascending
/// values: linear between the order statistics, the k-th of N at probability k / (N + 1).
double quantileType6(const std::vector<double>& ascending, double probability);

/// The acceleration of BCa: the skewness of the statistic when one case is left out at a time,
/// sum d^3 / (6 (sum d^2)^1.5), d the mean less the value (Efron 1987, formula 6.6 with the
/// jackknife of Efron and Tibshirani 1993, formula 14.15). 0 when leaving out makes no difference.
double acceleration(const std::vector<LeftOut>& leftOut);

/// `samples` holds the statistic of every sample, kSystemMissing or NaN for those that gave none;
/// `level` is in percent. Percentile bounds are quantiles at alpha/2 and 1 - alpha/2, those of BCa
/// (Efron 1987, J. Amer. Statist. Assoc. 82:171-185) quantiles at Phi(z0 + (z0 + z)/(1 - a (z0 +
/// z))), z0 = Phi^-1((samples below + half of those equal) / N). BCa bounds are missing where z0 is
/// infinite, that is where the statistic lies outside all samples.
BootstrapSummary summarizeBootstrap(double statistic, std::vector<double> samples,
                                    const std::vector<LeftOut>& leftOut, double level);

}  // namespace workbench
