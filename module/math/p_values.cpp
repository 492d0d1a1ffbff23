#include "module/math/p_values.h"

#include <algorithm>
#include <cmath>

#include "host/distributions.h"
#include "module/math/missing.h"

namespace proportions {

TestResult missingTest() { return {kSystemMissing, kSystemMissing, kSystemMissing}; }

TestResult binomialTest(double oneSided) {
  if (isMissing(oneSided)) return missingTest();
  return {kSystemMissing, oneSided, std::min(1.0, 2.0 * oneSided)};
}

TestResult normalTest(double z) {
  if (isMissing(z)) return missingTest();
  const double lower = MCDistFun::CdfStdNorm(z);
  if (isMissing(lower)) return {z, kSystemMissing, kSystemMissing};
  const double upper = MCDistFun::CdfStdNorm(-z);
  if (isMissing(upper)) return {z, kSystemMissing, kSystemMissing};
  const double oneSided = std::min(lower, upper);
  return {z, oneSided, 2.0 * oneSided};
}

TestResult zTest(double deviation, double variance) {
  if (!(variance > 0.0)) return missingTest();
  return normalTest(deviation / std::sqrt(variance));
}

}  // namespace proportions
