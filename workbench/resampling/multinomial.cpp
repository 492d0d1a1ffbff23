#include "workbench/resampling/multinomial.h"

#include <array>
#include <cmath>

namespace workbench {
namespace {

constexpr double kInversionLimit = 10.0;

/// ln((1 + s) / (1 - s)) for |s| <= 1/3: its series, to the last term that counts.
double twiceAtanh(double s) {
  const double square = s * s;
  double power = s, sum = 0;
  for (int k = 1; k < 60; k += 2) {
    const double next = sum + power / k;
    if (next == sum) break;
    sum = next;
    power *= square;
  }
  return 2 * sum;
}

/// ln(x) for x positive and normal. The libraries' differ in the last place from machine to
/// machine.
double naturalLog(double x) {
  constexpr double kLog2 = 0.693147180559945309417232121458176568;
  constexpr double kRootHalf = 0.707106781186547524400844362104849039;
  int exponent = 0;
  double m = std::frexp(x, &exponent);
  if (m < kRootHalf) {
    m *= 2;
    --exponent;
  }
  return exponent * kLog2 + twiceAtanh((m - 1) / (m + 1));
}

/// exp(x) for -16 <= x <= 0.
double exponential(double x) {
  constexpr int kHalvings = 6;
  const double reduced = x * 0x1p-6;
  double term = 1, sum = 1;
  for (int k = 1; k < 20; ++k) {
    term *= reduced / k;
    sum += term;
  }
  for (int i = 0; i < kHalvings; ++i) sum *= sum;
  return sum;
}

/// Walks up from 0 until the probabilities reach a uniform number; p <= 1/2 and n * p < 10.
int64_t byInversion(int64_t n, double p, RandomStream& random) {
  const double odds = p / (1 - p);
  const double none = exponential(-static_cast<double>(n) * twiceAtanh(p / (2 - p)));
  double u = random.uniform(), mass = none;
  int64_t k = 0;
  while (u > mass && k < n) {
    u -= mass;
    ++k;
    mass *= odds * (static_cast<double>(n - k + 1) / static_cast<double>(k));
    if (mass == 0) break;  // what is left of u is rounding
  }
  return k;
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

/// p <= 1/2 and n * p >= 10; the names are the paper's.
int64_t byRejection(int64_t trials, double p, RandomStream& random) {
  const auto n = static_cast<double>(trials);
  const double spq = std::sqrt(n * p * (1 - p));
  const double b = 1.15 + 2.53 * spq, a = -0.0873 + 0.0248 * b + 0.01 * p, c = n * p + 0.5;
  const double vr = 0.92 - 4.2 / b, alpha = (2.83 + 5.1 / b) * spq, r = p / (1 - p);
  const double m = std::floor((n + 1) * p);
  for (;;) {
    const double u = random.uniform() - 0.5, v = random.uniform();
    const double us = 0.5 - std::fabs(u);
    const double k = std::floor((2 * a / us + b) * u + c);
    if (us >= 0.07 && v <= vr) return static_cast<int64_t>(k);
    if (k < 0 || k > n) continue;
    const double left = naturalLog(v * alpha / (a / (us * us) + b));
    const double right = (m + 0.5) * naturalLog((m + 1) / (r * (n - m + 1))) +
                         (n + 1) * naturalLog((n - m + 1) / (n - k + 1)) +
                         (k + 0.5) * naturalLog(r * (n - k + 1) / (k + 1)) + stirlingTail(m) +
                         stirlingTail(n - m) - stirlingTail(k) - stirlingTail(n - k);
    if (left <= right) return static_cast<int64_t>(k);
  }
}

}  // namespace

int64_t drawBinomial(int64_t n, double p, RandomStream& random) {
  if (n <= 0 || !(p > 0)) return 0;
  if (p >= 1) return n;
  if (p > 0.5) return n - drawBinomial(n, 1 - p, random);
  return static_cast<double>(n) * p < kInversionLimit ? byInversion(n, p, random)
                                                      : byRejection(n, p, random);
}

void drawMultinomial(const std::vector<int64_t>& counts, RandomStream& random,
                     std::vector<int64_t>& drawn) {
  int64_t cases = 0;
  for (const int64_t count : counts) cases += count;
  int64_t left = cases;
  drawn.assign(counts.size(), 0);
  for (size_t i = 0; i < counts.size() && left > 0; ++i) {
    drawn[i] = counts[i] == cases
                   ? left
                   : drawBinomial(left, static_cast<double>(counts[i]) / static_cast<double>(cases),
                                  random);
    left -= drawn[i];
    cases -= counts[i];
  }
}

}  // namespace workbench
