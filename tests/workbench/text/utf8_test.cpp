#include "workbench/text/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace workbench {
namespace {

using Characters = std::vector<std::pair<int32_t, std::string>>;

Characters charactersOf(std::string_view text) {
  Characters result;
  forEachCharacter(text, [&result](int32_t character, std::string_view bytes) {
    result.emplace_back(character, bytes);
  });
  return result;
}

TEST(Utf8, CharactersOfEveryLength) {
  EXPECT_EQ(charactersOf("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"),
            (Characters{{'a', "a"},
                        {0xE9, "\xC3\xA9"},
                        {0x20AC, "\xE2\x82\xAC"},
                        {0x1F600, "\xF0\x9F\x98\x80"}}));
  EXPECT_EQ(charactersOf(std::string_view("\0", 1)), (Characters{{0, std::string(1, '\0')}}));
  EXPECT_EQ(charactersOf(""), Characters{});
}

TEST(Utf8, ABrokenSequenceIsPassedOverAndNoMore) {
  EXPECT_EQ(charactersOf("\xE2\x82z"), (Characters{{-1, "\xE2\x82"}, {'z', "z"}}));
  EXPECT_EQ(charactersOf("\x80\x80"), (Characters{{-1, "\x80"}, {-1, "\x80"}}));
  EXPECT_EQ(charactersOf("a\xF0\x9F"), (Characters{{'a', "a"}, {-1, "\xF0\x9F"}}));
}

TEST(Utf8, TheFirstByteThatIsNotUtf8) {
  EXPECT_EQ(firstInvalidUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::string::npos);
  EXPECT_EQ(firstInvalidUtf8("ab\xE9"), 2U);
  for (const char* overlong : {"\xC0\x80", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF"}) {
    EXPECT_EQ(firstInvalidUtf8(overlong), 0U);
  }
  EXPECT_EQ(firstInvalidUtf8("\xED\xA0\x80"), 0U) << "surrogate";
  for (const char* beyondUnicode : {"\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
    EXPECT_EQ(firstInvalidUtf8(beyondUnicode), 0U);
  }
  EXPECT_EQ(firstInvalidUtf8("\x80"), 0U) << "continuation without a start";
  EXPECT_EQ(firstInvalidUtf8("\xC3"), 0U) << "cut off";
  EXPECT_TRUE(isUtf8("\xF0\x9F\x98\x80"));
  EXPECT_FALSE(isUtf8("\xC0\xAF"));
}

TEST(Utf8, TheFirstByteThatIsNotUtf8AtAnyPlaceOfALongText) {
  for (size_t place = 0; place < 100; ++place) {
    std::string text(100, 'x');
    EXPECT_EQ(firstInvalidUtf8(text), std::string::npos);
    text[place] = '\xE9';
    EXPECT_EQ(firstInvalidUtf8(text), place);
    text.replace(place, 1, "\xC3\xA9");
    EXPECT_EQ(firstInvalidUtf8(text), std::string::npos) << place;
  }
}

TEST(Utf8, WhatIsNotUtf8IsReplaced) {
  EXPECT_EQ(validUtf8("plain \xC3\xA9"), "plain \xC3\xA9");
  EXPECT_EQ(validUtf8("a\xFF"
                      "b\xC3"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
}

}  // namespace
}  // namespace workbench
