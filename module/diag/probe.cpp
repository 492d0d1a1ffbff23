#include <cstdio>

#include "host/distributions.h"
#include "module/diag/dump.h"
#include "module/math/missing.h"

namespace proportions {

void dumpNoncentralityProbe() {
  constexpr double df = 5.0, step = 1e-6, tolerance = 1e-12;
  for (const double t : {2.0, 1.0, 0.0, -1.0, -2.0, -3.0, -4.0}) {
    for (const double p : {0.975, 0.025}) {
      const double found = MCDistFun::FindNCParamT(t, df, p, step, tolerance);
      if (isMissing(found)) {
        std::printf("FindNCParamT( %f, %f, %f, %f ) = missing\n", t, df, p, step);
      } else {
        std::printf("FindNCParamT( %f, %f, %f, %f ) = %f\n", t, df, p, step, found);
      }
    }
  }
  std::fflush(stdout);
}

}  // namespace proportions
