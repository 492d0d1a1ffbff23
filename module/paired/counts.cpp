#include "module/paired/counts.h"

#include <algorithm>
#include <cmath>

namespace proportions::paired {

double Counts::least() const { return std::trunc(std::min(b, c) + 0.5); }

double Counts::spread() const {
  const double concordant = a + d;
  const double n = concordant + b + c;
  return (concordant * (b + c) + 4.0 * b * c) / n / n;
}

}  // namespace proportions::paired
