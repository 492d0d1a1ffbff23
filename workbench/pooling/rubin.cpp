#include "workbench/pooling/rubin.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/constants.h"
#include "host/distributions.h"

namespace workbench {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
/// By how much two estimates of the same proportions, or differences of such, may differ: each has
/// up to three roundings of half a unit in the last place below 1.
constexpr double kRounding = 1.5 * std::numeric_limits<double>::epsilon();

bool isValue(double value) { return std::isfinite(value) && !IsSystemMissing(value); }

PooledEstimate noEstimate() {
  PooledEstimate none;
  for (double* field : {&none.estimate, &none.within, &none.between, &none.total,
                        &none.standardError, &none.df, &none.lower, &none.upper,
                        &none.relativeIncrease, &none.missingInformation, &none.efficiency}) {
    *field = kSystemMissing;
  }
  return none;
}

/// About the first one, so that equal numbers have themselves as their mean.
double mean(const std::vector<ImputedEstimate>& imputations, double ImputedEstimate::*number) {
  const double first = imputations.front().*number;
  double sum = 0;
  for (const ImputedEstimate& one : imputations) sum += one.*number - first;
  return first + sum / static_cast<double>(imputations.size());
}

/// Of the estimates, 0 where nothing but their rounding tells them apart.
double variance(const std::vector<ImputedEstimate>& imputations, double mean) {
  const auto [least, most] = std::minmax_element(
      imputations.begin(), imputations.end(),
      [](const ImputedEstimate& a, const ImputedEstimate& b) { return a.estimate < b.estimate; });
  if (most->estimate - least->estimate <= kRounding) return 0;
  double squares = 0;
  for (const ImputedEstimate& one : imputations) {
    const double d = one.estimate - mean;
    squares += d * d;
  }
  return squares / static_cast<double>(imputations.size() - 1);
}

/// The lower Wilson bound from the product of both, which keeps its digits near 0; `c` is squared t
/// over n, `half` the half width times 1 + c.
double lowerWilson(double p, double c, double half) {
  const double above = p + c / 2 + half;
  return above > 0 ? p * p / above : 0;
}

/// Barnard and Rubin (1999), formula 3; `share` is that of the variance that is due to the missing
/// values.
double degreesOfFreedom(double m, double share, double completeDf) {
  const double observed = (completeDf + 1) / (completeDf + 3) * completeDf * (1 - share);
  if (share == 0) return observed;
  const double imputed = (m - 1) / (share * share);
  return observed > 0 ? 1 / (1 / imputed + 1 / observed) : 0;
}

}  // namespace

double twoSidedT(double df, double level) {
  const double tail = 1 - level / 100;
  if (std::isinf(df)) return -MCDistFun::IdfStdNorm(tail / 2);
  if (!(df > 0)) return kSystemMissing;
  // T^2 / (df + T^2) is beta distributed; whichever part is small keeps its digits.
  const double x = MCDistFun::IdfBeta(level / 100, 0.5, df / 2);
  if (IsSystemMissing(x)) return kSystemMissing;
  if (x <= 0.5) return std::sqrt(df * x / (1 - x));
  const double y = MCDistFun::IdfBeta(tail, df / 2, 0.5);
  return IsSystemMissing(y) ? kSystemMissing : std::sqrt(df * (1 - y) / y);
}

PooledEstimate poolEstimates(const std::vector<ImputedEstimate>& imputations, double completeDf,
                             double level) {
  const auto m = static_cast<double>(imputations.size());
  const bool complete = std::all_of(
      imputations.begin(), imputations.end(),
      [](const ImputedEstimate& one) { return isValue(one.estimate) && isValue(one.variance); });
  if (m < 2 || !complete) return noEstimate();

  PooledEstimate pooled;
  pooled.estimate = mean(imputations, &ImputedEstimate::estimate);
  pooled.within = mean(imputations, &ImputedEstimate::variance);
  pooled.between = variance(imputations, pooled.estimate);
  const double added = (1 + 1 / m) * pooled.between;
  pooled.total = pooled.within + added;
  pooled.standardError = std::sqrt(pooled.total);
  if (!(pooled.total > 0)) {
    // Every imputation gave the same, without variance: there is nothing to spread.
    pooled.df = degreesOfFreedom(m, 0, completeDf);
    pooled.lower = pooled.upper = pooled.estimate;
    pooled.efficiency = 1;
    return pooled;
  }
  pooled.relativeIncrease = pooled.within > 0 ? added / pooled.within : kInfinite;
  pooled.df = degreesOfFreedom(m, added / pooled.total, completeDf);
  const double r = pooled.relativeIncrease;
  pooled.missingInformation = std::isinf(r) ? 1 : (r + 2 / (pooled.df + 3)) / (r + 1);
  pooled.efficiency = 1 / (1 + pooled.missingInformation / m);
  const double t = twoSidedT(pooled.df, level);
  if (IsSystemMissing(t)) {
    pooled.lower = pooled.upper = kSystemMissing;
  } else {
    pooled.lower = pooled.estimate - t * pooled.standardError;
    pooled.upper = pooled.estimate + t * pooled.standardError;
  }
  return pooled;
}

PooledBounds pooledWilson(const PooledEstimate& pooled, double n, double level) {
  const double t =
      isValue(pooled.estimate) && pooled.df > 0 ? twoSidedT(pooled.df, level) : kSystemMissing;
  if (IsSystemMissing(t) || !(n > 0) || std::isinf(pooled.relativeIncrease)) {
    return {kSystemMissing, kSystemMissing};
  }
  const double p = pooled.estimate;
  const double c = t * t * (1 + pooled.relativeIncrease) / n;
  const double middle = p + c / 2, half = std::sqrt(c * (p * (1 - p) + c / 4));
  const double upper = p <= 0.5 ? (middle + half) / (1 + c) : 1 - lowerWilson(1 - p, c, half);
  return {lowerWilson(p, c, half), upper};
}

}  // namespace workbench
