/// Tests of equal proportions in paired samples.
#pragma once

#include <array>

#include "module/math/normal_test.h"
#include "module/paired/intervals.h"
#include "module/syntax/method_table.h"

namespace proportions {

using PairedTest = TestResult (*)(const PairedCounts&);

TestResult exactPaired(const PairedCounts& counts);
TestResult midPPaired(const PairedCounts& counts);
TestResult mcNemar(const PairedCounts& counts);
TestResult mcNemarCorrected(const PairedCounts& counts);
TestResult waldPairedTest(const PairedCounts& counts);
TestResult waldPairedTestCorrected(const PairedCounts& counts);

inline constexpr std::array<Method<PairedTest>, 6> kPairedTests{{
    {"EXACT", "Exact Binomial", false, exactPaired, false},
    {"MIDP", "Mid-p Adjusted Binomial", true, midPPaired, false},
    {"MCNEMAR", "McNemar", true, mcNemar},
    {"MCNEMARCC", "McNemar (Continuity Corrected)", false, mcNemarCorrected},
    {"WALD", "Wald", false, waldPairedTest},
    {"WALDCC", "Wald (Continuity Corrected)", false, waldPairedTestCorrected},
}};

/// Below this many terms the binomial sums leave none out.
inline constexpr double kFullSumTerms = 2048.0;
/// From this many terms on, those left out not counted, the sum is asked of the host as a whole.
/// Ten thousand million discordant cases need half of them.
inline constexpr double kMostTerms = 1048576.0;

/// The first term of the sum of binomial(n, 1/2) probabilities for k = 0..last, last <= n / 2, that
/// can have a part in the last bit of the sum; 0 for short sums.
double firstTermThatCounts(double last, double n);

}  // namespace proportions
