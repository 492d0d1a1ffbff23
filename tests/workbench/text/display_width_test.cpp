#include "workbench/text/display_width.h"

#include <gtest/gtest.h>

#include "workbench/text/utf8.h"

namespace {

using workbench::displayWidth;
using workbench::isUtf8;
using workbench::printable;

TEST(DisplayWidth, CountsColumns) {
  EXPECT_EQ(displayWidth(""), 0u);
  EXPECT_EQ(displayWidth("abc"), 3u);
  EXPECT_EQ(displayWidth("\xC3\xA9"), 1u);                  // precomposed letter
  EXPECT_EQ(displayWidth("e\xCC\x81"), 1u);                 // combining accent
  EXPECT_EQ(displayWidth("\xE6\xBC\xA2\xE5\xAD\x97"), 4u);  // two ideographs
  EXPECT_EQ(displayWidth("\xEF\xBC\xA1"), 2u);              // fullwidth A
  EXPECT_EQ(displayWidth("\xEF\xBD\xB1"), 1u);              // halfwidth katakana
  EXPECT_EQ(displayWidth("a\xE2\x80\x8D"), 1u);             // zero-width joiner
  EXPECT_EQ(displayWidth("\xFF\xFE"), 2u);                  // one column per bad byte
}

TEST(Printable, ShowsWhatATerminalWouldObeyAsEscapes) {
  EXPECT_EQ(printable("plain \xC3\xA9"), "plain \xC3\xA9");
  EXPECT_EQ(printable("a\nb\tc\rd"), "a\\nb\\tc\\rd");
  EXPECT_EQ(printable("\x1B[31m"), "\\u001B[31m");
  EXPECT_EQ(printable(std::string("a\0b", 3)), "a\\u0000b");
  EXPECT_EQ(printable("\xE2\x80\xAE"
                      "abc"),
            "\\u202Eabc");  // right-to-left override
  EXPECT_EQ(printable("a\xE2\x80\xA8"
                      "b"),
            "a\\u2028b");                       // line separator
  EXPECT_EQ(printable("\xC2\x85"), "\\u0085");  // control of the second set
}

TEST(Printable, ReplacesBytesThatAreNoUtf8) {
  EXPECT_EQ(printable("a\xFF"
                      "b"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_TRUE(isUtf8(printable("\xC3\x28\xE2\x82\xF0\x9F")));
}

}  // namespace
