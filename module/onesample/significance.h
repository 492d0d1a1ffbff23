/// Tests of one proportion against a test value.
#pragma once

#include <array>

#include "module/math/normal_test.h"
#include "module/onesample/intervals.h"
#include "module/syntax/method_table.h"

namespace proportions {

/// `p0` is the test value, strictly between 0 and 1.
using OneSampleTest = TestResult (*)(const OneSampleCounts&, double p0);

TestResult exactBinomial(const OneSampleCounts& counts, double p0);
TestResult midPBinomial(const OneSampleCounts& counts, double p0);
TestResult scoreTest(const OneSampleCounts& counts, double p0);
TestResult scoreTestCorrected(const OneSampleCounts& counts, double p0);
TestResult waldTest(const OneSampleCounts& counts, double p0);
TestResult waldTestCorrected(const OneSampleCounts& counts, double p0);

inline constexpr std::array<Method<OneSampleTest>, 6> kOneSampleTests{{
    {"EXACT", "Exact Binomial", false, exactBinomial, false},
    {"MIDP", "Mid-p Adjusted Binomial", true, midPBinomial, false},
    {"SCORE", "Score", true, scoreTest},
    {"SCORECC", "Score (Continuity Corrected)", false, scoreTestCorrected},
    {"WALD", "Wald", false, waldTest},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldTestCorrected},
}};

}  // namespace proportions
