/// One point of a beta distribution, and what the methods for its tails share.
#pragma once

namespace workbench {

/// Shapes a, b > 0 and a place x in (0, 1) with y = 1 - x. `excess` is a - (a + b) x, which decides
/// how far the place lies from the mean; it is given because with large shapes it cannot be found
/// again from the rounded values.
struct BetaPoint {
  long double a, b, x, y, excess;
};

/// The same place seen from the other end.
inline BetaPoint mirrored(const BetaPoint& at) { return {at.b, at.a, at.y, at.x, -at.excess}; }

/// x^a y^b / B(a, b), the density against d ln(x / y).
long double betaPower(const BetaPoint& at);

/// I_x(a, b) / betaPower for a place not above the mean, any shapes; its cost grows with the square
/// root of the smaller shape.
long double betaRatioByFraction(const BetaPoint& at);

/// The same for both shapes at or above kQuadratureShape, at a fixed cost.
long double betaRatioByQuadrature(const BetaPoint& at);
inline constexpr long double kQuadratureShape = 1000;

struct BetaTails {
  long double lower, upper;  ///< I_x(a, b) and its complement, both to full relative accuracy
  long double power;         ///< betaPower
};
BetaTails betaTails(const BetaPoint& at);

}  // namespace workbench
