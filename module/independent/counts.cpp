#include "module/independent/counts.h"

#include <algorithm>

#include "module/math/arithmetic.h"

namespace proportions::independent {

double Counts::crossDifference() const {
  return differenceOfProducts(first.x, second.n, second.x, first.n);
}

double Counts::difference() const { return crossDifference() / first.n / second.n; }

double Counts::variance(double less) const {
  return second.variance(second.n - less) + first.variance(first.n - less);
}

double Counts::pooledVariance() const {
  const Sample all{second.x + first.x, second.f + first.f, first.n + second.n};
  return (1.0 / first.n + 1.0 / second.n) * (all.p() * all.q());
}

double Counts::waldCorrection() const { return first.n + second.n; }

double Counts::hauckAndersonCorrection() const { return std::max(first.n, second.n); }

}  // namespace proportions::independent
