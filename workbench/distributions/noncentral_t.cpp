#include "workbench/distributions/noncentral_t.h"

#include <algorithm>
#include <cmath>

#include "workbench/distributions/gauss_legendre.h"
#include "workbench/distributions/stirling_error.h"

namespace workbench {
namespace {

constexpr double kHalfRoot = 0.7071067811865476;
constexpr double kLogRootTwoPi = 0.9189385332046728;
constexpr double kPi = 3.141592653589793;
// Beyond this the lower tail is left to its asymptotic expansion, whose next term is below 1e-13.
constexpr double kFar = -30;
// The integrand is followed until it has fallen by exp(-36).
constexpr double kDrop = 36;
constexpr double kReach = 700;  // of ln s
constexpr double kTolerance = 1e-12;
constexpr double kRounding = 4e-16;
constexpr int kMostHalvings = 8;

// 1 - 1/z^2 + 3/z^4 - ..., Abramowitz & Stegun 26.2.12: Phi(z) = phi(z) / -z times this.
double farFactor(double z) {
  const double s = 1 / (z * z);
  return 1 - s * (1 - 3 * s * (1 - 5 * s * (1 - 7 * s * (1 - 9 * s))));
}

double logPhi(double z) {
  if (z < kFar) return -z * z / 2 - kLogRootTwoPi - std::log(-z) + std::log(farFactor(z));
  const double tail = 0.5 * std::erfc(std::fabs(z) * kHalfRoot);
  return z < 0 ? std::log(tail) : std::log1p(-tail);
}

// phi(z) / Phi(z)
double inverseMills(double z) {
  if (z < kFar) return -z / farFactor(z);
  return std::exp(-z * z / 2 - kLogRootTwoPi) / (0.5 * std::erfc(-z * kHalfRoot));
}

// u - (e^(2u) - 1) / 2, by its series where the difference would cancel.
double logChi(double u) {
  if (std::fabs(u) > 0.02) return u - std::expm1(2 * u) / 2;
  const double w = 2 * u;
  return -u * u * (1 + w / 3 * (1 + w / 4 * (1 + w / 5 * (1 + w / 6 * (1 + w / 7 * (1 + w / 8))))));
}

// Given s = sqrt(chi^2 / df), P(T <= t) is Phi(t s - d); the integrand is taken over u = ln s.
struct Mixture {
  double t, df, d;

  double logValue(double u) const { return df * logChi(u) + logPhi(t * std::exp(u) - d); }

  // The derivative of logValue divided by s. Both terms fall as s grows, whatever the sign of t, so
  // there is one mode.
  double slope(double u) const {
    const double s = std::exp(u);
    return df * (1 / s - s) + t * inverseMills(t * s - d);
  }
  // A width over which the logarithm of the integrand changes little; never 0, though t * t may
  // overflow.
  double grain() const { return 1 / std::hypot(std::sqrt(2 * df + 1), t); }
};

double modeOf(const Mixture& mixture) {
  double low = -kReach, high = kReach;
  for (int step = 0; step < 80 && high - low > 0.02 * mixture.grain(); ++step) {
    const double middle = low + (high - low) / 2;
    (mixture.slope(middle) > 0 ? low : high) = middle;
  }
  return low;
}

// How far from the mode the integrand falls by kDrop, on the side that `direction` names.
double reachFrom(const Mixture& mixture, double mode, double direction) {
  const double floor = mixture.logValue(mode) - kDrop;
  double inside = 0, outside = mixture.grain();
  while (mixture.logValue(mode + direction * outside) > floor) {
    inside = outside;
    outside *= 2;
  }
  for (int step = 0; step < 6; ++step) {
    const double middle = (inside + outside) / 2;
    (mixture.logValue(mode + direction * middle) > floor ? inside : outside) = middle;
  }
  return outside;
}

// Halves a panel until its two halves agree with it.
template <class Function>
double adaptive(const Function& f, double lo, double hi, double whole, double allowed,
                int halvings) {
  const double middle = (lo + hi) / 2;
  const double left = gaussLegendre(f, lo, middle), right = gaussLegendre(f, middle, hi);
  const double sum = left + right;
  if (halvings == 0 || !(std::fabs(sum - whole) > allowed)) return sum;
  return adaptive(f, lo, middle, left, allowed, halvings - 1) +
         adaptive(f, middle, hi, right, allowed, halvings - 1);
}

}  // namespace

double logNoncentralT(double t, double df, double d) {
  const Mixture mixture{t, df, d};
  const double mode = modeOf(mixture);
  const double peak = mixture.logValue(mode);
  const double below = -reachFrom(mixture, mode, -1), above = reachFrom(mixture, mode, 1);
  const auto integrand = [&](double offset) {
    return std::exp(mixture.logValue(mode + offset) - peak);
  };
  const double left = gaussLegendre(integrand, below, 0);
  const double right = gaussLegendre(integrand, 0, above);
  // The exponents carry roundings of their own; to ask for more would be to ask for noise.
  const double noise = std::fabs(peak) + std::fabs(d) * (1 + std::fabs(t * std::exp(mode) - d));
  const double allowed = std::max(kTolerance, kRounding * noise) * (left + right);
  const double integral = adaptive(integrand, below, 0, left, allowed, kMostHalvings) +
                          adaptive(integrand, 0, above, right, allowed, kMostHalvings);
  // sqrt(df / pi) exp(-S(df / 2)) is the density of u at 0.
  const double constant = 0.5 * std::log(df / kPi) -
                          static_cast<double>(stirlingError(static_cast<long double>(df) / 2));
  return std::min(0.0, peak + constant + std::log(integral));
}

}  // namespace workbench
