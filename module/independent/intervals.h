/// Confidence intervals of the difference of two independent proportions.
#pragma once

#include <array>

#include "module/independent/counts.h"
#include "module/math/interval.h"
#include "module/math/level.h"
#include "module/math/method.h"

namespace proportions::independent {

/// Every method gives bounds in [-1, 1]; a bound that does not exist is missing. None treats 0 or n
/// successes in a way of its own.
using Interval = Bounds (*)(const Counts&, const Level&);

Bounds agrestiCaffo(const Counts& counts, const Level& level);
Bounds brownLiJeffreys(const Counts& counts, const Level& level);
Bounds hauckAnderson(const Counts& counts, const Level& level);
Bounds newcombe(const Counts& counts, const Level& level);
Bounds newcombeCorrected(const Counts& counts, const Level& level);
Bounds wald(const Counts& counts, const Level& level);
Bounds waldCorrected(const Counts& counts, const Level& level);

inline constexpr std::array<Method<Interval>, 7> kIntervals{{
    {"AGRESTI_CAFFO", "Agresti-Caffo", true, agrestiCaffo},
    {"BROWN_LI_JEFFREYS", "Brown-Li-Jeffreys", false, brownLiJeffreys},
    {"HAUCK_ANDERSON", "Hauck-Anderson", false, hauckAnderson},
    {"NEWCOMBE", "Newcombe", true, newcombe},
    {"NEWCOMBECC", "Newcombe (Continuity Corrected)", false, newcombeCorrected},
    {"WALD", "Wald", false, wald},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldCorrected},
}};

}  // namespace proportions::independent
