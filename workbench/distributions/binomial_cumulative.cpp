#include <cmath>

#include "host/distributions.h"
#include "workbench/distributions/beta_point.h"
#include "workbench/distributions/binomial_arguments.h"

namespace workbench {
namespace {

// P(X > k) is I_p(k + 1, n - k), for 0 <= k < n whole and 0 < p < 1.
BetaTails binomialTails(double k, double n, double p) {
  const long double q = 1 - static_cast<long double>(p);
  return betaTails({static_cast<long double>(k) + 1, static_cast<long double>(n) - k, p, q,
                    binomialExcess(k, n, p) + q});
}

}  // namespace
}  // namespace workbench

double MCDistFun::CdfBin(double k, double n, double p, int32_t& error) {
  using namespace workbench;
  if (!binomialArgumentsValid(k, n, p)) {
    error = 1;
    return MCMV::Missing();
  }
  if (k < 0) return 0;
  if (k >= n || p == 0) return 1;
  if (p == 1) return 0;
  return static_cast<double>(binomialTails(std::floor(k), n, p).upper);
}

double MCDistFun::CdfBinUpper(double k, double n, double p, int32_t& error) {
  using namespace workbench;
  if (!binomialArgumentsValid(k, n, p)) {
    error = 1;
    return MCMV::Missing();
  }
  if (k < 0) return 1;
  if (k >= n || p == 0) return 0;
  if (p == 1) return 1;
  return static_cast<double>(binomialTails(std::floor(k), n, p).lower);
}
