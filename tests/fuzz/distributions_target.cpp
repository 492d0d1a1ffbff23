// Any numbers as arguments of the distribution functions: what holds for the functions of the
// textbooks holds for these.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <tuple>

#include "host/distributions.h"
#include "tests/fuzz/target.h"
#include "workbench/distributions/noncentral_t.h"

namespace {

using fuzz::Choices;
using fuzz::promise;

/// Seconds of work that no call takes, the slowness of a build with sanitizers included.
constexpr double kLongestCall = 2;
/// Relative error that two different ways to one value may show. Counts near 2^53 leave the
/// mean to about 1e-16 of a standard deviation's square, which the tails multiply.
constexpr double kAgreement = 1e-11;
/// Smaller probabilities lose places: they are near the least double.
constexpr double kLeast = 1e-290;
/// 2^52: doubles from here on have no fraction.
constexpr double kNoFractions = 4503599627370496;

class WorkLimit {
 public:
  ~WorkLimit() { promise(seconds() - begin_ < kLongestCall, "a call comes to an end soon"); }

 private:
  static double seconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  }
  double begin_ = seconds();
};

std::string shown(std::initializer_list<double> values) {
  std::string text;
  char buffer[40];
  for (const double value : values) {
    std::snprintf(buffer, sizeof buffer, "%.17g ", value);
    text += buffer;
  }
  return text;
}

double anyBits(Choices& choices) {
  uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = bits << 8 | choices.byte();
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

/// Mostly what a run can pass, sometimes anything at all.
double count(Choices& choices) {
  const size_t kind = choices.below(8);
  if (kind == 0) return anyBits(choices);
  const double digits = choices.byte() * 256.0 + choices.byte();
  return kind < 5 ? digits : std::floor(digits * std::pow(10.0, static_cast<double>(kind * 2 - 8)));
}

double probability(Choices& choices) {
  const size_t kind = choices.below(8);
  if (kind == 0) return anyBits(choices);
  const double part = (choices.byte() * 256.0 + choices.byte()) / 65535.0;
  if (kind < 4) return part;
  const double small = part * std::pow(10.0, -static_cast<double>(choices.byte()));
  return kind < 7 ? small : 1 - small;
}

bool isProbability(double value) { return value >= 0 && value <= 1; }
bool isMissing(double value) { return value == MCMV::Missing(); }
bool isWhole(double value) { return value == std::floor(value); }

/// Whether two probabilities are the same but for rounding.
bool agree(double a, double b, double relative = kAgreement) {
  return std::fabs(a - b) <= relative * std::max(a, b) + kLeast;
}

struct Binomial {
  double k, n, p;
  double mass, lower, upper;
  int32_t error = 0;

  Binomial(double successes, double trials, double chance) : k(successes), n(trials), p(chance) {
    const WorkLimit limit;
    mass = MCDistFun::PdfBin(k, n, p, error);
    lower = MCDistFun::CdfBin(k, n, p, error);
    upper = MCDistFun::CdfBinUpper(k, n, p, error);
  }
  std::string shown() const { return ::shown({k, n, p, mass, lower, upper}); }
  void promises(bool holds, const char* what) const { promise(holds, what, shown()); }
};

void binomialNeighbours(const Binomial& at) {
  const auto [k, n, p] = std::tuple(at.k, at.n, at.p);
  if (!isWhole(k) || std::fabs(k) >= kNoFractions || n >= kNoFractions) return;
  const Binomial before(k - 1, n, p), mirror(n - k - 1, n, 1 - p);
  at.promises(agree(at.lower, before.lower + at.mass), "a lower tail grows by the term");
  at.promises(agree(before.upper, at.upper + at.mass), "an upper tail grows by the term");
  at.promises(before.lower <= at.lower && before.upper >= at.upper, "the tails are monotone");
  if (p < 0.5) return;  // else 1 - p is exact
  at.promises(agree(at.lower, mirror.upper) && agree(at.upper, mirror.lower),
              "failures are the successes of 1 - p");
}

void binomial(Choices& choices) {
  const double n = count(choices), p = probability(choices);
  const double k = choices.flag() ? count(choices) : std::floor(n * p) + count(choices) - 32768;
  const Binomial at(k, n, p);
  const bool numbers = !std::isnan(k) && !std::isnan(n) && !std::isnan(p);
  const bool refusable =
      !numbers || isMissing(k) || n < 0 || !isProbability(p) || !isWhole(n) || std::isinf(n);
  at.promises((at.error != 0) == refusable, "an error tells of arguments without an answer");
  if (at.error != 0) {
    at.promises(isMissing(at.mass) && isMissing(at.lower) && isMissing(at.upper),
                "an error has no value");
    return;
  }
  at.promises(isProbability(at.mass) && isProbability(at.lower) && isProbability(at.upper),
              "binomial values");
  at.promises(std::fabs(at.lower + at.upper - 1) < kAgreement, "both tails make one");
  at.promises(k >= 0 || (at.lower == 0 && at.upper == 1), "nothing below no success");
  at.promises(k < n || (at.lower == 1 && at.upper == 0), "nothing above all successes");
  binomialNeighbours(at);
}

void normal(Choices& choices) {
  const double z = choices.flag() ? anyBits(choices) : (count(choices) - 32768) / 900;
  const double below = MCDistFun::CdfStdNorm(z);
  if (std::isnan(z) || isMissing(z)) {
    promise(isMissing(below), "no number, no value", shown({z, below}));
    return;
  }
  promise(isProbability(below), "a normal probability", shown({z, below}));
  if (isMissing(-z)) return;  // the largest number has no mirror
  const double above = MCDistFun::CdfStdNorm(-z);
  promise(std::fabs(below + above - 1) < 1e-15, "both normal tails make one", shown({z, below}));
  if (!std::isinf(z)) {
    const double next = MCDistFun::CdfStdNorm(std::nextafter(z, HUGE_VAL));
    promise(below <= next, "the normal tail is monotone", shown({z, below, next}));
  }
  if (below < kLeast || below > 0.9) return;
  const double back = MCDistFun::IdfStdNorm(below);
  promise(std::fabs(back - z) <= 1e-14 * (1 + std::fabs(z)), "the quantile is the inverse",
          shown({z, below, back}));
}

void normalQuantile(double q) {
  const double z = MCDistFun::IdfStdNorm(q);
  promise(isMissing(z) != isProbability(q), "a quantile of each probability", shown({q, z}));
  if (isMissing(z)) return;
  promise(!std::isnan(z), "a normal quantile", shown({q, z}));
  promise(q < 0.5 ? z < 0 : z >= 0, "the median is nought", shown({q, z}));
  if (q > 0.5 && q < 1) {
    promise(z == -MCDistFun::IdfStdNorm(1 - q), "normal quantiles mirror", shown({q, z}));
  }
}

/// For whole shapes P(X <= x) is that of at least a successes in a + b - 1 trials.
double betaByBinomial(double x, double a, double b) {
  int32_t error = 0;
  return MCDistFun::CdfBinUpper(a - 1, a + b - 1, x, error);
}

void betaInverse(double q, double a, double b, double x) {
  const auto promised = [&](bool holds, const char* what) {
    promise(holds, what, shown({q, a, b, x}));
  };
  if (!isWhole(a) || !isWhole(b) || a + b >= kNoFractions) return;
  // The neighbouring doubles hold the probability between them.
  const double below = betaByBinomial(std::nextafter(x, 0.0), a, b);
  const double above = betaByBinomial(std::nextafter(x, 1.0), a, b);
  const double slack = kAgreement * q + kLeast;
  promised(x == 0 || below <= q + slack, "no smaller quantile");
  promised(x == 1 || above >= q - slack, "no larger quantile");
}

void betaQuantile(Choices& choices) {
  const double q = probability(choices), a = count(choices) + 0.5 * choices.flag();
  const double b = count(choices) + 0.5 * choices.flag();
  normalQuantile(q);
  double x = 0;
  {
    const WorkLimit limit;
    x = MCDistFun::IdfBeta(q, a, b);
  }
  const bool answerable = isProbability(q) && a > 0 && b > 0 && !std::isinf(a) && !std::isinf(b);
  promise(isMissing(x) != answerable, "a quantile of each beta variable", shown({q, a, b, x}));
  if (!answerable) return;
  promise(isProbability(x), "a beta quantile", shown({q, a, b, x}));
  if (std::min(a, b) < 0.5) return;  // no interval has such shapes
  const double higher = MCDistFun::IdfBeta(std::min(1.0, q * 1.001), a, b);
  promise(x <= higher, "beta quantiles are monotone", shown({q, a, b, x, higher}));
  if (q >= 0.5) {
    const double mirror = MCDistFun::IdfBeta(1 - q, b, a);
    promise(std::fabs(x - (1 - mirror)) < 1e-15, "beta quantiles mirror",
            shown({q, a, b, x, mirror}));
  }
  betaInverse(q, a, b, x);
}

void noncentrality(Choices& choices) {
  constexpr double kTolerance = 1e-9;
  const double t = choices.flag() ? anyBits(choices) : (count(choices) - 32768) / 3000;
  const double df = choices.flag() ? anyBits(choices) : choices.byte();
  const double p = probability(choices);
  double found = 0;
  {
    const WorkLimit limit;
    found = MCDistFun::FindNCParamT(t, df, p, 1e-6, kTolerance);
  }
  promise(!std::isnan(found), "a noncentrality or the missing value", shown({t, df, p, found}));
  const bool answerable = std::isfinite(t) && !isMissing(t) && df > 0 && p > 0 && p < 1;
  promise(answerable || isMissing(found), "no noncentrality without arguments",
          shown({t, df, p, found}));
  // Where the lower tail can be computed with all its places, the answer lies where it says.
  if (!answerable || isMissing(found) || !(df > 0.01 && df < 1e6) || std::fabs(t) > 100) return;
  if (p < 1e-100 || p > 0.5) return;
  const double at = std::log(p);
  const double reach = 4 * kTolerance * (1 + std::fabs(found));
  const double before = workbench::logNoncentralT(t, df, found - reach);
  const double after = workbench::logNoncentralT(t, df, found + reach);
  promise(before >= at && at >= after, "the noncentrality gives the probability",
          shown({t, df, p, found, before, at, after}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Choices choices(bytes, size);
  switch (choices.below(4)) {
    case 0:
      binomial(choices);
      break;
    case 1:
      normal(choices);
      break;
    case 2:
      betaQuantile(choices);
      break;
    default:
      noncentrality(choices);
  }
  return 0;
}
