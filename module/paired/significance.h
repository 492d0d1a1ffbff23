/// Tests of equal proportions in paired samples.
#pragma once

#include <array>

#include "module/math/method.h"
#include "module/math/p_values.h"
#include "module/paired/counts.h"

namespace proportions::paired {

using Test = TestResult (*)(const Counts&);

TestResult exact(const Counts& counts);
TestResult midP(const Counts& counts);
TestResult mcNemar(const Counts& counts);
TestResult mcNemarCorrected(const Counts& counts);
TestResult wald(const Counts& counts);
TestResult waldCorrected(const Counts& counts);

inline constexpr std::array<Method<Test>, 6> kTests{{
    {"EXACT", "Exact Binomial", false, exact, false},
    {"MIDP", "Mid-p Adjusted Binomial", true, midP, false},
    {"MCNEMAR", "McNemar", true, mcNemar},
    {"MCNEMARCC", "McNemar (Continuity Corrected)", false, mcNemarCorrected},
    {"WALD", "Wald", false, wald},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldCorrected},
}};

}  // namespace proportions::paired
