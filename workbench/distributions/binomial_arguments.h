/// What the binomial functions share about their arguments.
#pragma once

namespace workbench {

/// Whether X binomial(n, p) exists and k is a number: n a whole number >= 0, p in [0, 1], k neither
/// NaN nor the missing value.
bool binomialArgumentsValid(double k, double n, double p);

/// k - n p with full relative accuracy, although both may be near 1e15.
long double binomialExcess(double k, double n, double p);

}  // namespace workbench
