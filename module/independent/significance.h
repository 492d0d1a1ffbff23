/// Tests of equal proportions in two independent groups.
#pragma once

#include <array>

#include "module/independent/counts.h"
#include "module/math/method.h"
#include "module/math/p_values.h"

namespace proportions::independent {

using Test = TestResult (*)(const Counts&);

TestResult hauckAnderson(const Counts& counts);
TestResult wald(const Counts& counts);
TestResult waldCorrected(const Counts& counts);
TestResult waldH0(const Counts& counts);
TestResult waldH0Corrected(const Counts& counts);

inline constexpr std::array<Method<Test>, 5> kTests{{
    {"HAUCK_ANDERSON", "Hauck-Anderson", false, hauckAnderson},
    {"WALD", "Wald", false, wald},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldCorrected},
    {"WALDH0", "Wald H0", true, waldH0},
    {"WALDH0CC", "Wald H0 (Continuity Corrected)", false, waldH0Corrected},
}};

}  // namespace proportions::independent
