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

TEST(Excerpt, EscapesEachByteOfABrokenCharacter) {
  EXPECT_EQ(excerpt("a\xe2\x82z"), "a\\xe2\\x82z");
  EXPECT_EQ(excerpt("\xf0\x9f\x98"), "\\xf0\\x9f\\x98");
  EXPECT_EQ(excerpt("\xed\xa0\x80"), "\\xed\\xa0\\x80");
}

}  // namespace
}  // namespace workbench
