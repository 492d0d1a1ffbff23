#include "workbench/render/wrap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "workbench/text/display_width.h"

namespace workbench {
namespace {

using Lines = std::vector<std::string>;

TEST(Wrap, BreaksAtBlanks) {
  EXPECT_EQ(wrapText("Asymptotic Standard Error", 12), (Lines{"Asymptotic", "Standard", "Error"}));
  EXPECT_EQ(wrapText("Asymptotic Standard Error", 14), (Lines{"Asymptotic", "Standard Error"}));
  EXPECT_EQ(wrapText("short", 12), (Lines{"short"}));
  EXPECT_EQ(wrapText("", 12), (Lines{""}));
  EXPECT_EQ(wrapText("a  b", 3), (Lines{"a b"}));
}

TEST(Wrap, CutsWordsThatAreTooWide) {
  EXPECT_EQ(wrapText("abcdefgh ij", 3), (Lines{"abc", "def", "gh", "ij"}));
  EXPECT_EQ(wrapText("日本語", 4), (Lines{"日本", "語"}));
  EXPECT_EQ(wrapText("日本", 1), (Lines{"日", "本"})) << "a character wider than the line";
  EXPECT_EQ(wrapText("abc", 0), (Lines{"a", "b", "c"}));
}

TEST(Wrap, IndentsAllLinesButTheFirst) {
  EXPECT_EQ(wrapText("abc de fgh ijk", 6, 2), (Lines{"abc de", "  fgh", "  ijk"}));
  EXPECT_EQ(wrapText("short", 6, 2), (Lines{"short"}));
  EXPECT_EQ(wrapText("abcdefghijkl", 5, 2), (Lines{"abcde", "  fgh", "  ijk", "  l"}));
  EXPECT_EQ(wrapText("ab", 0, 2), (Lines{"ab"})) << "there is room for one character at least";
}

TEST(Wrap, KeepsCombiningMarksWithTheirLetters) {
  const std::string e = "e\xCC\x81";
  EXPECT_EQ(wrapText(e + e + e, 2), (Lines{e + e, e}));
}

TEST(Wrap, NoLineIsWiderThanAsked) {
  const std::string text = "日本語 and a verylongwordindeed 😀😀😀😀 e\xCC\x81nd x";
  for (size_t width = 2; width < 60; ++width) {
    std::string all;
    for (const std::string& line : wrapText(text, width)) {
      EXPECT_LE(displayWidth(line), width);
      all += line;
    }
    std::string letters = text, kept = all;
    letters.erase(std::remove(letters.begin(), letters.end(), ' '), letters.end());
    kept.erase(std::remove(kept.begin(), kept.end(), ' '), kept.end());
    EXPECT_EQ(kept, letters) << "nothing is lost at width " << width;
  }
}

TEST(Wrap, Widths) {
  EXPECT_EQ(widestWord("Asymptotic Standard Error"), 10u);
  EXPECT_EQ(widestWord("  "), 0u);
  EXPECT_EQ(widestLine({"a", "日本", "abc"}), 4u);
  EXPECT_EQ(widthOf("abc"), 3u);
  EXPECT_EQ(widthOf("日"), 2u);
}

TEST(Wrap, PlacesText) {
  EXPECT_EQ(placed("ab", 5, Align::kLeft), "ab   ");
  EXPECT_EQ(placed("ab", 5, Align::kRight), "   ab");
  EXPECT_EQ(placed("ab", 5, Align::kCentre), " ab  ");
  EXPECT_EQ(placed("日", 4, Align::kRight), "  日");
  EXPECT_EQ(placed("abc", 2, Align::kRight), "abc");
  EXPECT_EQ(repeated("─", 3), "───");
}

}  // namespace
}  // namespace workbench
