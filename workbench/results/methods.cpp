#include "workbench/results/methods.h"

#include <algorithm>
#include <array>

namespace workbench {
namespace {

constexpr TableKind kOneInterval{Design::kOneSample, ResultKind::kIntervals};
constexpr TableKind kOneTest{Design::kOneSample, ResultKind::kTests};
constexpr TableKind kPairInterval{Design::kPaired, ResultKind::kIntervals};
constexpr TableKind kPairTest{Design::kPaired, ResultKind::kTests};
constexpr TableKind kGroupInterval{Design::kIndependent, ResultKind::kIntervals};
constexpr TableKind kGroupTest{Design::kIndependent, ResultKind::kTests};

constexpr std::string_view kWaldCorrected = "Wald (Continuity Corrected)";
constexpr std::string_view kWaldCorrectedPhrase = "Wald with continuity correction";
constexpr std::string_view kWaldTest = "Wald test";
constexpr std::string_view kWaldTestCorrected = "Wald test with continuity correction";
constexpr std::string_view kExact = "Exact Binomial";
constexpr std::string_view kExactTest = "exact binomial test";
constexpr std::string_view kMidP = "Mid-p Adjusted Binomial";
constexpr std::string_view kMidPTest = "mid-p adjusted binomial test";

constexpr std::array<Method, 38> kMethods{{
    {kOneInterval, "AGRESTI_COULL", "Agresti-Coull", "Agresti-Coull"},
    {kOneInterval, "ANSCOMBE", "Anscombe", "Anscombe"},
    {kOneInterval, "CLOPPER_PEARSON", "Clopper-Pearson Exact ...", "Clopper-Pearson exact"},
    {kOneInterval, "JEFFREYS", "Jeffreys", "Jeffreys"},
    {kOneInterval, "LOGIT", "Logit", "logit"},
    {kOneInterval, "WALD", "Wald", "Wald"},
    {kOneInterval, "WALDCC", kWaldCorrected, kWaldCorrectedPhrase},
    {kOneInterval, "WILSON_SCORE", "Wilson Score", "Wilson score"},
    {kOneInterval, "WILSON_SCORECC", "Wilson Score (Continuity Corrected)",
     "Wilson score with continuity correction"},
    {kOneTest, "EXACT", kExact, kExactTest},
    {kOneTest, "MIDP", kMidP, kMidPTest},
    {kOneTest, "SCORE", "Score", "score test"},
    {kOneTest, "SCORECC", "Score (Continuity Corrected)", "score test with continuity correction"},
    {kOneTest, "WALD", "Wald", kWaldTest},
    {kOneTest, "WALDCC", kWaldCorrected, kWaldTestCorrected},
    {kPairInterval, "AGRESTI_MIN", "Agresti-Min", "Agresti-Min"},
    {kPairInterval, "BONETT_PRICE", "Bonett-Price", "Bonett-Price"},
    {kPairInterval, "NEWCOMBE", "Newcombe", "Newcombe"},
    {kPairInterval, "WALD", "Wald", "Wald"},
    {kPairInterval, "WALDCC", kWaldCorrected, kWaldCorrectedPhrase},
    {kPairTest, "EXACT", kExact, kExactTest},
    {kPairTest, "MIDP", kMidP, kMidPTest},
    {kPairTest, "MCNEMAR", "McNemar", "McNemar test"},
    {kPairTest, "MCNEMARCC", "McNemar (Continuity Corrected)",
     "McNemar test with continuity correction"},
    {kPairTest, "WALD", "Wald", kWaldTest},
    {kPairTest, "WALDCC", kWaldCorrected, kWaldTestCorrected},
    {kGroupInterval, "AGRESTI_CAFFO", "Agresti-Caffo", "Agresti-Caffo"},
    {kGroupInterval, "BROWN_LI_JEFFREYS", "Brown-Li-Jeffreys", "Brown-Li-Jeffreys"},
    {kGroupInterval, "HAUCK_ANDERSON", "Hauck-Anderson", "Hauck-Anderson"},
    {kGroupInterval, "NEWCOMBE", "Newcombe", "Newcombe"},
    {kGroupInterval, "NEWCOMBECC", "Newcombe (Continuity Corrected)",
     "Newcombe with continuity correction"},
    {kGroupInterval, "WALD", "Wald", "Wald"},
    {kGroupInterval, "WALDCC", kWaldCorrected, kWaldCorrectedPhrase},
    {kGroupTest, "HAUCK_ANDERSON", "Hauck-Anderson", "Hauck-Anderson test"},
    {kGroupTest, "WALD", "Wald", kWaldTest},
    {kGroupTest, "WALDCC", kWaldCorrected, kWaldTestCorrected},
    {kGroupTest, "WALDH0", "Wald H0", "Wald H0 test"},
    {kGroupTest, "WALDH0CC", "Wald H0 (Continuity Corrected)",
     "Wald H0 test with continuity correction"},
}};

}  // namespace

const Method* findMethod(TableKind table, std::string_view labelKey) {
  const auto found = std::find_if(kMethods.begin(), kMethods.end(), [&](const Method& method) {
    return method.table.design == table.design && method.table.kind == table.kind &&
           method.label == labelKey;
  });
  return found == kMethods.end() ? nullptr : &*found;
}

}  // namespace workbench
