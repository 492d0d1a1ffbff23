/// Combining the results of multiply imputed data.
#pragma once

#include <vector>

namespace workbench {

/// An estimate of one imputation and its variance, the standard error squared.
struct ImputedEstimate {
  double estimate = 0;
  double variance = 0;
};

/// kSystemMissing stands for what cannot be computed; `df` may be infinite.
struct PooledEstimate {
  double estimate = 0;
  double within = 0, between = 0, total = 0;  ///< variances
  double standardError = 0;
  double df = 0;
  double lower = 0, upper = 0;
  double relativeIncrease = 0;    ///< of the variance, due to the missing values
  double missingInformation = 0;  ///< its fraction
  double efficiency = 0;          ///< relative to infinitely many imputations
};

/// Rubin (1987), Multiple Imputation for Nonresponse in Surveys, with the degrees of freedom of
/// Barnard and Rubin (1999, Biometrika 86:948-955) for complete data with `completeDf` of them.
/// `level` is in percent. The estimates are proportions or differences of two; what tells them
/// apart by no more than their rounding is no variance between them. Missing throughout for fewer
/// than two imputations or when one of them has no estimate or no variance.
PooledEstimate poolEstimates(const std::vector<ImputedEstimate>& imputations, double completeDf,
                             double level);

struct PooledBounds {
  double lower = 0, upper = 0;
};

/// The proportions that the pooled score statistic does not reject: Lott and Reiter (2020, The
/// American Statistician 74:109-115), for `n` trials in each imputation. Takes the degrees of
/// freedom and the relative increase in variance from the pooled estimate.
PooledBounds pooledWilson(const PooledEstimate& pooled, double n, double level);

/// The number that |T| exceeds with probability 1 - level/100, T Student's t with `df` > 0 degrees
/// of freedom (infinite: normal).
double twoSidedT(double df, double level);

}  // namespace workbench
