#include "workbench/results/method_pages.h"

#include <gtest/gtest.h>

#include "workbench/manual/manual.h"

namespace workbench {
namespace {

TEST(MethodPages, AMethodHasItsFormulaAndItsSource) {
  const TableKind intervals{Design::kOneSample, ResultKind::kIntervals};
  const std::string_view wilson = describedMethod(*findMethod(intervals, "Wilson Score"));
  EXPECT_NE(wilson.find("√"), std::string_view::npos);
  EXPECT_NE(wilson.find("Wilson (1927)"), std::string_view::npos);
  EXPECT_EQ(wilson.find('#'), std::string_view::npos);
}

TEST(MethodPages, IntervalsAndTestsOfOneNameAreDifferent) {
  const std::string_view interval =
      describedMethod(*findMethod({Design::kPaired, ResultKind::kIntervals}, "Wald"));
  const std::string_view test =
      describedMethod(*findMethod({Design::kPaired, ResultKind::kTests}, "Wald"));
  EXPECT_FALSE(interval.empty());
  EXPECT_FALSE(test.empty());
  EXPECT_NE(interval, test);
}

TEST(MethodPages, EveryMethodIsDescribed) {
  for (const Design design : {Design::kOneSample, Design::kPaired, Design::kIndependent}) {
    for (const ResultKind kind : {ResultKind::kIntervals, ResultKind::kTests}) {
      for (const char* label : {"Wald", "Wald (Continuity Corrected)"}) {
        const Method* method = findMethod({design, kind}, label);
        ASSERT_NE(method, nullptr);
        EXPECT_FALSE(describedMethod(*method).empty()) << method->keyword;
      }
    }
    EXPECT_FALSE(notationOf(design).empty());
  }
  EXPECT_NE(sharedNotation().find("Throughout"), std::string::npos);
}

TEST(MethodPages, WhatNoPageKnowsIsEmpty) {
  const Method unknown{{Design::kPaired, ResultKind::kTests}, "WILSON_SCORE", "", ""};
  EXPECT_TRUE(describedMethod(unknown).empty());
}

}  // namespace
}  // namespace workbench
