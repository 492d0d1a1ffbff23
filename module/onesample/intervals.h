/// Confidence intervals of one proportion.
#pragma once

#include <array>

#include "module/math/interval.h"
#include "module/math/level.h"
#include "module/math/method.h"
#include "module/onesample/counts.h"

namespace proportions::onesample {

/// Every method gives bounds in [0, 1]; a bound that does not exist is missing.
using Interval = Bounds (*)(const Counts&, const Level&);

Bounds agrestiCoull(const Counts& counts, const Level& level);
Bounds anscombe(const Counts& counts, const Level& level);
Bounds clopperPearson(const Counts& counts, const Level& level);
Bounds jeffreys(const Counts& counts, const Level& level);
Bounds logit(const Counts& counts, const Level& level);
Bounds wald(const Counts& counts, const Level& level);
Bounds waldCorrected(const Counts& counts, const Level& level);
Bounds wilsonScore(const Counts& counts, const Level& level);
Bounds wilsonScoreCorrected(const Counts& counts, const Level& level);

inline constexpr std::array<Method<Interval>, 9> kIntervals{{
    {"AGRESTI_COULL", "Agresti-Coull", true, agrestiCoull},
    {"ANSCOMBE", "Anscombe", false, anscombe},
    {"CLOPPER_PEARSON", "Clopper-Pearson Exact ...", false, clopperPearson, false},
    {"JEFFREYS", "Jeffreys", true, jeffreys, false},
    {"LOGIT", "Logit", false, logit},
    {"WALD", "Wald", false, wald},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldCorrected},
    {"WILSON_SCORE", "Wilson Score", true, wilsonScore},
    {"WILSON_SCORECC", "Wilson Score (Continuity Corrected)", false, wilsonScoreCorrected},
}};

}  // namespace proportions::onesample
