#include <algorithm>
#include <cmath>
#include <optional>

#include "host/distributions.h"
#include "workbench/distributions/noncentral_t.h"

namespace workbench {
namespace {

// From this many degrees of freedom on the variable is normal, to the last place of a double.
constexpr double kNormalFreedom = 1e17;
// With this few nothing of the variable is left at finite places but the sign of its numerator.
constexpr double kSignFreedom = 1e-20;
constexpr int kMostWidenings = 60;
constexpr int kMostSteps = 60;

struct End {
  double place, miss;
};

// ln P(T <= t) - ln r, which falls as the noncentrality grows.
struct Miss {
  double t, df, logTail;
  End at(double d) const { return {d, logNoncentralT(t, df, d) - logTail}; }
};

struct Bracket {
  End low, high;  // low.miss >= 0 >= high.miss
};

// Goes out from the start in the direction of the root, eight times as far each time.
std::optional<Bracket> bracketFrom(const Miss& miss, double start, double width) {
  End here = miss.at(start);
  if (!std::isfinite(here.miss)) return std::nullopt;
  const double direction = here.miss > 0 ? 1 : -1;
  for (int widening = 0; widening < kMostWidenings; ++widening) {
    const End next = miss.at(here.place + direction * width);
    if (!std::isfinite(next.miss)) return std::nullopt;
    if (direction * next.miss <= 0)
      return direction > 0 ? Bracket{here, next} : Bracket{next, here};
    here = next;
    width *= 8;
  }
  return std::nullopt;
}

// Regula falsi with the weights of Anderson & Bjorck (1973), bisecting now and then so that it
// cannot stall. Ends when the place moves, or the bracket spans, no more than the tolerance.
double rootIn(Bracket bracket, const Miss& miss, double tolerance) {
  auto [low, high] = bracket;
  double lastMiss = 0, lastPlace = low.place;
  for (int step = 1; step <= kMostSteps && high.place - low.place > tolerance; ++step) {
    const double middle = low.place + (high.place - low.place) / 2;
    double place = (low.place * high.miss - high.place * low.miss) / (high.miss - low.miss);
    if (!(place > low.place && place < high.place) || step % 6 == 0) place = middle;
    if (!(place > low.place && place < high.place)) break;
    const End next = miss.at(place);
    const double moved = std::fabs(place - lastPlace);
    lastPlace = place;
    if (next.miss == 0 || moved <= tolerance) break;
    End& replaced = next.miss > 0 ? low : high;
    End& kept = next.miss > 0 ? high : low;
    if (lastMiss * next.miss > 0) {
      const double weight = 1 - next.miss / lastMiss;
      kept.miss *= weight > 0 ? weight : 0.5;
    }
    replaced = next;
    lastMiss = next.miss;
  }
  return lastPlace;
}

// The noncentrality with P(T <= t) = r, 0 < r <= 0.5.
double noncentralityOfLowerTail(double t, double df, double r, double step, double tolerance) {
  const double spread = std::sqrt(1 + t * (t / (2 * df)));
  const double start = t * (1 - 1 / (4 * df + 1)) - MCDistFun::IdfStdNorm(r) * spread;
  const double resolution = 4e-16 * std::fabs(start);
  const Miss miss{t, df, std::log(r)};
  const auto bracket = bracketFrom(miss, start, std::max(step, 1e-6 * spread));
  if (!bracket) return MCMV::Missing();
  return rootIn(*bracket, miss, std::max(tolerance / 4, resolution));
}

}  // namespace
}  // namespace workbench

double MCDistFun::FindNCParamT(double t, double df, double p, double step, double tolerance) {
  if (!std::isfinite(t) || t == MCMV::Missing()) return MCMV::Missing();
  if (!(df > 0) || !(p > 0 && p < 1)) return MCMV::Missing();
  if (!(step > 0) || !std::isfinite(step)) return MCMV::Missing();
  if (!(tolerance >= 0) || !std::isfinite(tolerance)) return MCMV::Missing();
  if (df >= workbench::kNormalFreedom) return t - IdfStdNorm(p);
  if (df <= workbench::kSignFreedom) return -IdfStdNorm(p);
  // The upper tail is the lower one of the mirrored variable, and 1 - p is exact there.
  if (p > 0.5) return -workbench::noncentralityOfLowerTail(-t, df, 1 - p, step, tolerance);
  return workbench::noncentralityOfLowerTail(t, df, p, step, tolerance);
}
