#include "module/independent/counts.h"

#include <algorithm>

#include "module/math/arithmetic.h"

namespace proportions::independent {
namespace {

double unit(const Sample& sample) { return unitOf(sample.n); }

}  // namespace

double Counts::crossDifference() const {
  const double u1 = unit(first), u2 = unit(second);
  return differenceOfProducts(u1 * first.x, u2 * second.n, u2 * second.x, u1 * first.n);
}

double Counts::perTrials(double cross) const {
  const double n1 = unit(first) * first.n, n2 = unit(second) * second.n;
  const double both = n1 * n2;
  return both <= kAllWhole ? cross / both : cross / n1 / n2;
}

double Counts::difference() const { return perTrials(crossDifference()); }

double Counts::variance(double less) const {
  return second.variance(second.n - less) + first.variance(first.n - less);
}

double Counts::pooledVariance() const {
  const Sample all{second.x + first.x, second.f + first.f, first.n + second.n};
  return (1.0 / first.n + 1.0 / second.n) * (all.p() * all.q());
}

double Counts::waldCorrection() const {
  const double units = unit(first) * unit(second);
  return units * first.n + units * second.n;
}

double Counts::hauckAndersonCorrection() const {
  return unit(first) * unit(second) * std::max(first.n, second.n);
}

}  // namespace proportions::independent
