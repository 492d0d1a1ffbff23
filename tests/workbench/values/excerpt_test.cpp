#include "workbench/values/excerpt.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST(Excerpt, LeavesPlainTextsAlone) {
  EXPECT_EQ(excerpt(""), "");
  EXPECT_EQ(excerpt("yes \"no\""), "yes \"no\"");
  EXPECT_EQ(excerpt("Zürich 東京 😀"), "Zürich 東京 😀");
}

TEST(Excerpt, ShowsEightyCharactersAtMost) {
  const std::string eighty(80, 'x');
  EXPECT_EQ(excerpt(eighty), eighty);
  EXPECT_EQ(excerpt(eighty + "y"), eighty + "...");
  std::string accented;
  for (int i = 0; i < 81; ++i) accented += "é";
  EXPECT_EQ(excerpt(accented), accented.substr(0, 160) + "...");
}

TEST(Excerpt, EscapesControlCharactersAndForeignBytes) {
  EXPECT_EQ(excerpt("a\nb\rc\td"), "a\\nb\\rc\\td");
  EXPECT_EQ(excerpt("\x1b[31m\x7f"), "\\x1b[31m\\x7f");
  EXPECT_EQ(excerpt("\xc2\x9b"), "\\u009b");
  EXPECT_EQ(excerpt("caf\xe9"), "caf\\xe9");
  EXPECT_EQ(excerpt(std::string_view("a\0b", 3)), "a\\x00b");
}

TEST(CharacterLength, KnowsWhichBytesAreUtf8) {
  EXPECT_EQ(characterLength("a"), 1U);
  EXPECT_EQ(characterLength("é"), 2U);
  EXPECT_EQ(characterLength("東"), 3U);
  EXPECT_EQ(characterLength("😀"), 4U);
  for (const char* wrong : {"\x80", "\xc3", "\xc0\xaf", "\xe0\x9f\xbf", "\xed\xa0\x80",
                            "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xff"}) {
    EXPECT_EQ(characterLength(wrong), 0U) << excerpt(wrong);
  }
}

}  // namespace
}  // namespace workbench
