/// Tests of equal proportions in two independent groups.
#pragma once

#include <array>

#include "module/independent/intervals.h"
#include "module/math/normal_test.h"
#include "module/syntax/method_table.h"

namespace proportions {

using IndependentTest = TestResult (*)(const TwoGroups&);

TestResult hauckAndersonTest(const TwoGroups& groups);
TestResult waldDifferenceTest(const TwoGroups& groups);
TestResult waldDifferenceTestCorrected(const TwoGroups& groups);
TestResult pooledTest(const TwoGroups& groups);
TestResult pooledTestCorrected(const TwoGroups& groups);

inline constexpr std::array<Method<IndependentTest>, 5> kIndependentTests{{
    {"HAUCK_ANDERSON", "Hauck-Anderson", false, hauckAndersonTest},
    {"WALD", "Wald", false, waldDifferenceTest},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldDifferenceTestCorrected},
    {"WALDH0", "Wald H0", true, pooledTest},
    {"WALDH0CC", "Wald H0 (Continuity Corrected)", false, pooledTestCorrected},
}};

}  // namespace proportions
