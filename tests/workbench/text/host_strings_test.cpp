#include "host/strings.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using InPlace = char* (*)(char*);

/// Applies a function to a text; bytes after the text's end must stay as they are.
std::string applied(InPlace function, std::string text) {
  const size_t length = text.size();
  text += '\0';
  text += "guard";
  char* const answer = function(text.data());
  EXPECT_EQ(answer, text.data());
  EXPECT_EQ(text.substr(length + 1), "guard");
  return answer;
}

TEST(Trim, RemovesTrailingBlanksOnly) {
  EXPECT_EQ(applied(ZELKMBstrtrim_A, "ab  "), "ab");
  EXPECT_EQ(applied(ZELKMBstrtrim_A, "  a b"), "  a b");
  EXPECT_EQ(applied(ZELKMBstrtrim_A, "    "), "");
  EXPECT_EQ(applied(ZELKMBstrtrim_A, ""), "");
  EXPECT_EQ(applied(ZELKMBstrtrim_A, "a\t"), "a\t");
}

TEST(CaseMapping, MapsEveryScript) {
  EXPECT_EQ(applied(ZELKMBstrupr_A, "abc-\xC3\xA9"), "ABC-\xC3\x89");
  EXPECT_EQ(applied(ZELKMBstrlwr_A, "ABC-\xC3\x89"), "abc-\xC3\xA9");
  EXPECT_EQ(applied(ZELKMBstrupr_A,
                    "stra\xC3\x9F"
                    "e"),
            "STRASSE");  // as long in bytes
  EXPECT_EQ(applied(ZELKMBstrupr_A, ""), "");
}

TEST(CaseMapping, WhatWouldGrowIsLeftAsItIs) {
  EXPECT_EQ(applied(ZELKMBstrupr_A, "\xCE\x90"), "\xCE\x90");  // one letter becomes three
}

TEST(CaseMapping, KeepsBytesThatAreNoUtf8) {
  EXPECT_EQ(applied(ZELKMBstrupr_A,
                    "a\xFF"
                    "b"),
            "A\xFF"
            "B");
}

TEST(CaseMapping, WhatShrinksEndsEarlier) {
  EXPECT_EQ(applied(ZELKMBstrlwr_A, "\xE2\x84\xAA"), "k");  // the Kelvin sign
}

TEST(Compare, LooksAtNoMoreThanTheGivenBytes) {
  EXPECT_EQ(ZELKMBstrncoll_A("abc", "abd", 2), 0);
  EXPECT_LT(ZELKMBstrncoll_A("abc", "abd", 3), 0);
  EXPECT_EQ(ZELKMBstrncoll_A("abc", "xyz", 0), 0);
}

TEST(Compare, StopsAtTheEndOfTheShorterText) {
  EXPECT_LT(ZELKMBstrncoll_A("ab", "abc", 100), 0);
  EXPECT_GT(ZELKMBstrncoll_A("abc", "ab", 100), 0);
  EXPECT_EQ(ZELKMBstrncoll_A("ab", "ab", 100), 0);
  EXPECT_LT(ZELKMBstrncoll_A("", "a", 100), 0);
}

TEST(Compare, TellsTextsApartThatLookAlike) {
  EXPECT_NE(ZELKMBstrncoll_A("\xC3\xA9", "e\xCC\x81", 8), 0);
  EXPECT_EQ(ZELKMBstrncoll_A("\xC3\xA9", "e\xCC\x81", 8) < 0,
            ZELKMBstrncoll_A("e\xCC\x81", "\xC3\xA9", 8) > 0);
}

}  // namespace
