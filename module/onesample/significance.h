/// Tests of one proportion against a test value.
#pragma once

#include <array>

#include "module/math/method.h"
#include "module/math/p_values.h"
#include "module/onesample/counts.h"

namespace proportions::onesample {

/// `p0` is the test value, strictly between 0 and 1.
using Test = TestResult (*)(const Counts&, double p0);

TestResult exact(const Counts& counts, double p0);
TestResult midP(const Counts& counts, double p0);
TestResult score(const Counts& counts, double p0);
TestResult scoreCorrected(const Counts& counts, double p0);
TestResult wald(const Counts& counts, double p0);
TestResult waldCorrected(const Counts& counts, double p0);

inline constexpr std::array<Method<Test>, 6> kTests{{
    {"EXACT", "Exact Binomial", false, exact, false},
    {"MIDP", "Mid-p Adjusted Binomial", true, midP, false},
    {"SCORE", "Score", true, score},
    {"SCORECC", "Score (Continuity Corrected)", false, scoreCorrected},
    {"WALD", "Wald", false, wald},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldCorrected},
}};

}  // namespace proportions::onesample
