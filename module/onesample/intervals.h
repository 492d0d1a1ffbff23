/// Confidence intervals of one proportion.
#pragma once

#include <array>

#include "module/math/interval.h"
#include "module/syntax/method_table.h"

namespace proportions {

/// x successes and f failures in n = x + f > 0 trials.
struct OneSampleCounts {
  double x;
  double f;
  double n;
};

/// Every method gives bounds in [0, 1]; a bound that does not exist is missing. 1 - p is taken as f
/// / n throughout: the same quantity, with all its digits when p is close to 1.
using OneSampleInterval = Bounds (*)(const OneSampleCounts&, const Level&);

Bounds agrestiCoull(const OneSampleCounts& counts, const Level& level);
Bounds anscombe(const OneSampleCounts& counts, const Level& level);
Bounds clopperPearson(const OneSampleCounts& counts, const Level& level);
Bounds jeffreys(const OneSampleCounts& counts, const Level& level);
Bounds logit(const OneSampleCounts& counts, const Level& level);
Bounds wald(const OneSampleCounts& counts, const Level& level);
Bounds waldCorrected(const OneSampleCounts& counts, const Level& level);
Bounds wilsonScore(const OneSampleCounts& counts, const Level& level);
Bounds wilsonScoreCorrected(const OneSampleCounts& counts, const Level& level);

inline constexpr std::array<Method<OneSampleInterval>, 9> kOneSampleIntervals{{
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

}  // namespace proportions
