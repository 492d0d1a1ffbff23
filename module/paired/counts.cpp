#include "module/paired/counts.h"

#include <algorithm>
#include <cmath>

#include "module/math/arithmetic.h"

namespace proportions::paired {

double Counts::least() const { return std::trunc(std::min(b, c) + 0.5); }

double Counts::spread() const {
  const double unit = unitOf(total());
  const double concordant = unit * (a + d), first = unit * b, second = unit * c;
  const double n = concordant + first + second;
  return (concordant * (first + second) + 4.0 * first * second) / n / n;
}

}  // namespace proportions::paired
