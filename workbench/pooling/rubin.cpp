#include "workbench/pooling/rubin.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/constants.h"
#include "host/distributions.h"

namespace workbench {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

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
  for (const ImputedEstimate& one : imputations) {
    pooled.estimate += one.estimate / m;
    pooled.within += one.variance / m;
  }
  for (const ImputedEstimate& one : imputations) {
    const double d = one.estimate - pooled.estimate;
    pooled.between += d * d / (m - 1);
  }
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
  // The smaller bound from the product of both, which keeps its digits near 0.
  const double upper = (middle + half) / (1 + c);
  const double lower = middle + half > 0 ? p * p / (middle + half) : 0;
  return {lower, upper};
}

}  // namespace workbench
