/// The remainder of Stirling's formula, S(a) = ln Gamma(a + 1) - ((a + 1/2) ln a - a + ln(2 pi) /
/// 2), which the binomial mass and the beta density are written with (Loader 2000).
#pragma once

namespace workbench {

/// S(k) for a whole number k >= 1 with its reciprocal, absolute error below 1e-17.
double stirlingErrorWhole(double k, double reciprocal);

/// S(a) for any a > 0, absolute error below 2e-17 (relative to 1 + |S(a)|).
long double stirlingError(long double a);

}  // namespace workbench
