/// The lower tail of the noncentral t distribution.
#pragma once

namespace workbench {

/// ln P(T <= t) for T noncentral t with `df` degrees of freedom and noncentrality d; t and d
/// finite, df positive and finite. Probabilities far below the least double are still told apart.
/// The relative error of the probability is about 1e-12; upper tails are lower ones of (-t, -d).
double logNoncentralT(double t, double df, double d);

}  // namespace workbench
