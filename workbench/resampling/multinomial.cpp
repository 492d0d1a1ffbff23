#include "workbench/resampling/multinomial.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace workbench {
namespace {

constexpr double kInversionLimit = 10.0;
/// Factors whose product is taken as it is: of the largest numbers of trials it is below 10^240.
constexpr double kFewFactors = 15;
constexpr double kLog2 = 0.693147180559945309417232121458176568;

/// 1 / (2 k + 1).
template <size_t N>
constexpr std::array<double, N> oddReciprocals() {
  std::array<double, N> values{};
  for (size_t k = 0; k < N; ++k) values[k] = 1 / static_cast<double>(2 * k + 1);
  return values;
}

/// 1 / k!.
template <size_t N>
constexpr std::array<double, N> factorialReciprocals() {
  std::array<double, N> values{1};
  for (size_t k = 1; k < N; ++k) values[k] = values[k - 1] / static_cast<double>(k);
  return values;
}

/// ln((1 + s) / (1 - s)) by the first terms of its series in s^2.
template <size_t Terms>
double twiceAtanh(double s) {
  constexpr auto kCoefficients = oddReciprocals<Terms>();
  const double square = s * s;
  double sum = 0;
  for (size_t k = Terms - 1; k > 0; --k) sum = (sum + kCoefficients[k]) * square;
  return 2 * (s + s * sum);
}

/// ln(x) for x positive and normal. The libraries' differ in the last place from machine to
/// machine.
double naturalLog(double x) {
  constexpr double kRootHalf = 0.707106781186547524400844362104849039;
  constexpr uint64_t kFraction = (uint64_t{1} << 52) - 1, kHalf = uint64_t{1022} << 52;
  const auto bits = std::bit_cast<uint64_t>(x);
  auto exponent = static_cast<double>(static_cast<int64_t>(bits >> 52) - 1022);
  auto m = std::bit_cast<double>((bits & kFraction) | kHalf);  // 1/2 <= m < 1
  if (m < kRootHalf) {
    m *= 2;
    exponent -= 1;
  }
  // The argument is below 0.172, where eleven terms are good to 2^-55.
  return exponent * kLog2 + twiceAtanh<11>((m - 1) / (m + 1));
}

/// ln(1 - p) for 0 < p <= 1/2: for the small p of rare kinds few terms do.
double logOfRest(double p) {
  const double s = p / (2 - p);
  return s < 0x1p-10 ? -twiceAtanh<3>(s) : -twiceAtanh<17>(s);
}

/// exp(x) for -16 <= x <= 0: a power of 2, and the series for what is left, within ln(2)/2 of 0.
/// The terms are grouped so that few of them wait for others.
double exponential(double x) {
  constexpr auto c = factorialReciprocals<14>();
  const auto power = static_cast<int64_t>(x * (1 / kLog2) - 0.5);
  const double y = x - static_cast<double>(power) * kLog2;
  const double y2 = y * y, y4 = y2 * y2, y8 = y4 * y4;
  const double first = (c[0] + c[1] * y) + (c[2] + c[3] * y) * y2;
  const double second = (c[4] + c[5] * y) + (c[6] + c[7] * y) * y2;
  const double third = (c[8] + c[9] * y) + (c[10] + c[11] * y) * y2;
  const double rest = c[12] + c[13] * y;
  const auto scale = std::bit_cast<double>(static_cast<uint64_t>(1023 + power) << 52);
  return scale * (first + second * y4 + (third + rest * y4) * y8);
}

/// ln k! less Stirling's approximation of it, as BTRS takes it.
double stirlingTail(double k) {
  constexpr std::array kFirst{0.0810614667953272, 0.0413406959554092, 0.0276779256849983,
                              0.0207906721037650, 0.0166446911898211, 0.0138761288230707,
                              0.0118967099458917, 0.0104112652619720, 0.00925546218271273,
                              0.00833056343336287};
  if (k < static_cast<double>(kFirst.size())) return kFirst[static_cast<size_t>(k)];
  const double square = (k + 1) * (k + 1);
  return (1.0 / 12 - (1.0 / 360 - 1.0 / 1260 / square) / square) / (k + 1);
}

/// The largest whole number up to x, for x within 2^62 of 0.
int64_t wholePart(double x) {
  const auto towardsZero = static_cast<int64_t>(x);
  return towardsZero - static_cast<int64_t>(static_cast<double>(towardsZero) > x);
}

}  // namespace

BinomialDraw::BinomialDraw(double p)
    : isFlipped_(p > 0.5),
      isCertain_(!(p > 0) || p >= 1),
      p_(isFlipped_ ? 1 - p : p),
      rest_(1 - p_),
      odds_(p_ / rest_),
      logOfRest_(isCertain_ ? 0 : logOfRest(p_)) {}

int64_t BinomialDraw::operator()(int64_t n, RandomStream& random) const {
  if (n <= 0) return 0;
  const int64_t rarer = isCertain_                                      ? 0
                        : static_cast<double>(n) * p_ < kInversionLimit ? byInversion(n, random)
                                                                        : byRejection(n, random);
  return isFlipped_ ? n - rarer : rarer;
}

/// Walks up from 0 until the probabilities reach a uniform number.
int64_t BinomialDraw::byInversion(int64_t n, RandomStream& random) const {
  const double none = exponential(static_cast<double>(n) * logOfRest_);
  double u = random.uniform(), mass = none;
  int64_t k = 0;
  while (u > mass && k < n) {
    u -= mass;
    ++k;
    mass *= odds_ * (static_cast<double>(n - k + 1) / static_cast<double>(k));
    if (mass == 0) break;  // what is left of u is rounding
  }
  return k;
}

/// The names are the paper's. Most draws end with the first pair of numbers.
int64_t BinomialDraw::byRejection(int64_t trials, RandomStream& random) const {
  const auto n = static_cast<double>(trials);
  const double spq = std::sqrt(n * p_ * rest_);
  const double b = 1.15 + 2.53 * spq, a = -0.0873 + 0.0248 * b + 0.01 * p_, c = n * p_ + 0.5;
  const double vr = 0.92 - 4.2 / b;
  for (;;) {
    const double u = random.uniform() - 0.5, v = random.uniform();
    const double us = 0.5 - std::fabs(u);
    const double x = (2 * a / us + b) * u + c;
    if (us >= 0.07 && v <= vr) [[likely]] {
      return wholePart(x);
    }
    const double k = std::floor(x);
    if (k < 0 || k > n) continue;
    const double alpha = (2.83 + 5.1 / b) * spq;
    if (isBelowDensity(n, v * alpha / (a / (us * us) + b), k)) return static_cast<int64_t>(k);
  }
}

/// What BTRS asks of a candidate k that the squeeze does not accept: whether the number is at most
/// the mass of k in units of that of the mode m. Next to the mode, factor by factor, as the paper's
/// BTRD does it.
[[gnu::noinline]] bool BinomialDraw::isBelowDensity(double n, double scaled, double k) const {
  const double r = odds_, m = std::floor((n + 1) * p_);
  if (std::fabs(k - m) <= kFewFactors) {
    double upper = 1, lower = 1;
    const double last = std::max(k, m);
    for (double i = std::min(k, m) + 1; i <= last; i += 1) {
      upper *= r * (n - i + 1);
      lower *= i;
    }
    return k > m ? scaled * lower <= upper : scaled * upper <= lower;
  }
  const double right = (m + 0.5) * naturalLog((m + 1) / (r * (n - m + 1))) +
                       (n + 1) * naturalLog((n - m + 1) / (n - k + 1)) +
                       (k + 0.5) * naturalLog(r * (n - k + 1) / (k + 1)) + stirlingTail(m) +
                       stirlingTail(n - m) - stirlingTail(k) - stirlingTail(n - k);
  return naturalLog(scaled) <= right;
}

Multinomial::Multinomial(const std::vector<int64_t>& counts) {
  for (const int64_t count : counts) cases_ += count;
  int64_t remaining = cases_;
  for (const int64_t count : counts) {
    const bool isLast = count == remaining;
    draws_.emplace_back(isLast ? 1.0 : static_cast<double>(count) / static_cast<double>(remaining));
    remaining -= count;
  }
}

/// All samples together take one kind after the other: the draws of different samples do not wait
/// for each other.
void Multinomial::draw(std::vector<RandomStream>& streams,
                       std::vector<std::vector<int64_t>>& drawn) const {
  drawn.resize(streams.size());
  for (auto& sample : drawn) sample.resize(draws_.size());
  std::vector<int64_t> left(streams.size(), cases_);
  for (size_t kind = 0; kind < draws_.size(); ++kind) {
    for (size_t sample = 0; sample < streams.size(); ++sample) {
      const int64_t count = draws_[kind](left[sample], streams[sample]);
      drawn[sample][kind] = count;
      left[sample] -= count;
    }
  }
}

}  // namespace workbench
