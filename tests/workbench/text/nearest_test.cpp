#include "workbench/text/nearest.h"

#include <gtest/gtest.h>

namespace {

using workbench::nearest;

const std::vector<std::string> kWords = {"AGRESTI_COULL", "ANSCOMBE",     "WALD",
                                         "WALDCC",        "WILSON_SCORE", "NONE"};

TEST(Nearest, FindsTheWordThatWasMeant) {
  EXPECT_EQ(nearest("WLAD", kWords), "WALD");   // neighbours swapped
  EXPECT_EQ(nearest("WALDC", kWords), "WALD");  // both one letter away: the first
  EXPECT_EQ(nearest("WALDCCC", kWords), "WALDCC");
  EXPECT_EQ(nearest("ANSCOMB", kWords), "ANSCOMBE");  // a letter left out
  EXPECT_EQ(nearest("AGRESTI-COULL", kWords), "AGRESTI_COULL");
  EXPECT_EQ(nearest("none", {"NONE"}), "NONE");  // whatever the case
}

TEST(Nearest, TakesAStartForTheWholeWord) {
  EXPECT_EQ(nearest("WILSON", kWords), "WILSON_SCORE");
  EXPECT_EQ(nearest("agresti", kWords), "AGRESTI_COULL");
  EXPECT_EQ(nearest("W", kWords), "");
}

TEST(Nearest, SaysNothingWhenNothingIsNear) {
  EXPECT_EQ(nearest("JEFFREYS", kWords), "");
  EXPECT_EQ(nearest("x", {"y"}), "");
  EXPECT_EQ(nearest("", kWords), "");
  EXPECT_EQ(nearest("WALD", {}), "");
}

TEST(Nearest, CountsLettersNotBytes) {
  // One Greek letter of four differs; its two bytes do not make it farther.
  EXPECT_EQ(nearest("\xCE\xB1\xCE\xB2\xCE\xB3\xCE\xB4", {"\xCE\x91\xCE\x92\xCE\x93\xCE\xB6"}),
            "\xCE\x91\xCE\x92\xCE\x93\xCE\xB6");
}

TEST(Nearest, TakesAnyBytes) {
  EXPECT_EQ(nearest("\xFF\xFE", kWords), "");
  EXPECT_EQ(nearest(std::string(1'000'000, 'W'), kWords), "");
}

}  // namespace
