/// Confidence intervals of the difference of two paired proportions.
#pragma once

#include <array>

#include "module/math/interval.h"
#include "module/paired/record.h"
#include "module/syntax/method_table.h"

namespace proportions {

/// A two-by-two table of pairs: a both successes, b only the first, c only the second, d neither.
struct PairedCounts {
  double a;
  double b;
  double c;
  double d;
  double total() const { return a + b + c + d; }
};

/// (b + c) / N - ((b - c) / N)², N times the variance of the difference, with `concordant` = N - b
/// - c. Multiplied out its terms are all positive, so that it keeps its digits when nearly all
/// pairs are discordant one way.
double discordantSpread(double concordant, double b, double c);

/// Every method gives bounds in [-1, 1]; a bound that does not exist is missing.
using PairedInterval = Bounds (*)(const PairedCounts&, const Level&);

Bounds agrestiMin(const PairedCounts& counts, const Level& level);
Bounds bonettPrice(const PairedCounts& counts, const Level& level);
Bounds newcombePaired(const PairedCounts& counts, const Level& level);
Bounds waldPaired(const PairedCounts& counts, const Level& level);
Bounds waldPairedCorrected(const PairedCounts& counts, const Level& level);

inline constexpr std::array<Method<PairedInterval>, 5> kPairedIntervals{{
    {"AGRESTI_MIN", "Agresti-Min", false, agrestiMin},
    {"BONETT_PRICE", "Bonett-Price", true, bonettPrice},
    {"NEWCOMBE", "Newcombe", true, newcombePaired},
    {"WALD", "Wald", false, waldPaired},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldPairedCorrected},
}};

}  // namespace proportions
