#include "module/math/half_sum.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "host/distributions.h"
#include "module/math/arithmetic.h"
#include "module/math/binomial.h"

namespace proportions {
namespace {

/// The sum for counts that would take millions of terms, or whose terms the whole numbers of
/// doubles can no longer tell apart.
double lowerTail(double last, double n, double lastWeight) {
  const double all = atMost(last, n, 0.5), term = exactly(last, n, 0.5);
  if (isMissing(all) || isMissing(term)) return kSystemMissing;
  return all - (1.0 - lastWeight) * term;
}

}  // namespace

/// The test is defined by its terms: each is asked of the host, and the first that fails fails the
/// test. The cumulative probability is the same quantity; it stands in where the terms would take
/// longer than anyone waits. The sum is kept in extended precision, so that neither its order nor
/// the terms left out show.
double halfSum(double last, double n, double lastWeight) {
  const double first = firstTermThatCounts(last, n);
  if (last - first >= kMostTerms || last >= kAllWhole) return lowerTail(last, n, lastWeight);
  int32_t error = 0;
  long double sum = 0.0L;
  for (double k = first; k <= last; ++k) {
    const double term = MCDistFun::PdfBin(k, n, 0.5, error);
    if (error != 0 || isMissing(term)) return kSystemMissing;
    sum += static_cast<long double>(k == last ? lastWeight * term : term);
  }
  return static_cast<double>(sum);
}

/// With g = n - 2·last and t terms between k and `last`, ln P(X = k) / P(X = last) is at most
/// -2·t·(g + t) / (n + 1), because ln(j / (n + 1 - j)) <= -2·(n + 1 - 2j) / (n + 1) for j <= (n +
/// 1) / 2; and below k each term is less than exp(-2·(g + 2t) / (n + 1)) times the one above it,
/// where g + 2t >= 2·sqrt(t·(g + t)). The geometric series of the terms left out is therefore less
/// than 2^-66 of the last term.
double firstTermThatCounts(double last, double n) {
  if (last < kFullSumTerms) return 0.0;
  const double bits = 66.0 * std::log(2.0);
  const double bound = bits + std::log(1.0 + std::sqrt((n + 1.0) / (8.0 * bits)));
  const double g = n - 2.0 * last;
  const double t = 0.5 * (std::sqrt(g * g + 2.0 * (n + 1.0) * bound) - g);
  return std::max(0.0, std::floor(last - t));
}

}  // namespace proportions
