#include <cmath>

#include "host/distributions.h"

// In extended precision because a rounding of z / sqrt(2) costs z^2 times as much in the tail.
double MCDistFun::CdfStdNorm(double z) {
  constexpr long double kHalfRoot = 0.707106781186547524400844362104849039L;
  if (std::isnan(z) || z == MCMV::Missing()) return MCMV::Missing();
  return static_cast<double>(0.5L * std::erfc(-z * kHalfRoot));
}
