#include "workbench/distributions/binomial_arguments.h"

#include <cmath>

#include "host/distributions.h"

namespace workbench {

bool binomialArgumentsValid(double k, double n, double p) {
  if (std::isnan(k) || k == MCMV::Missing()) return false;
  if (!(p >= 0 && p <= 1)) return false;
  return n >= 0 && std::isfinite(n) && std::trunc(n) == n;
}

// The product is split into its rounded value and the exact rest; k minus the former is exact
// where the two are close, and elsewhere one rounding does no harm.
long double binomialExcess(double k, double n, double p) {
  const double product = n * p;
  const double rest = std::fma(n, p, -product);
  return (static_cast<long double>(k) - product) - rest;
}

}  // namespace workbench
