/// Confidence intervals of the difference of two paired proportions.
#pragma once

#include <array>

#include "module/math/interval.h"
#include "module/math/level.h"
#include "module/math/method.h"
#include "module/paired/counts.h"

namespace proportions::paired {

/// Every method gives bounds in [-1, 1]; a bound that does not exist is missing.
using Interval = Bounds (*)(const Counts&, const Level&);

Bounds agrestiMin(const Counts& counts, const Level& level);
Bounds bonettPrice(const Counts& counts, const Level& level);
Bounds newcombe(const Counts& counts, const Level& level);
Bounds wald(const Counts& counts, const Level& level);
Bounds waldCorrected(const Counts& counts, const Level& level);

inline constexpr std::array<Method<Interval>, 5> kIntervals{{
    {"AGRESTI_MIN", "Agresti-Min", false, agrestiMin},
    {"BONETT_PRICE", "Bonett-Price", true, bonettPrice},
    {"NEWCOMBE", "Newcombe", true, newcombe},
    {"WALD", "Wald", false, wald},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldCorrected},
}};

}  // namespace proportions::paired
