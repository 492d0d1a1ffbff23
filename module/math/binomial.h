/// The host's binomial probabilities with the error flag turned into the missing value.
#pragma once

#include <cstdint>

#include "host/distributions.h"
#include "module/math/missing.h"

namespace proportions {

using BinomialFunction = double (*)(double, double, double, int32_t&);

/// The function's answer, or the missing value when it raises its flag.
inline double askBinomial(BinomialFunction function, double k, double n, double p) {
  int32_t error = 0;
  const double answer = function(k, n, p, error);
  return error != 0 ? kSystemMissing : answer;
}

/// P(X <= k)
inline double atMost(double k, double n, double p) {
  return askBinomial(MCDistFun::CdfBin, k, n, p);
}

/// P(X >= k), asked for as such: 1 - P(X <= k - 1) would lose the digits of a small tail.
inline double atLeast(double k, double n, double p) {
  return askBinomial(MCDistFun::CdfBinUpper, k - 1, n, p);
}

/// P(X = k)
inline double exactly(double k, double n, double p) {
  return askBinomial(MCDistFun::PdfBin, k, n, p);
}

}  // namespace proportions
