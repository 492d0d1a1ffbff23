#include "workbench/text/collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using workbench::compareStrings;
using workbench::orderStringsBy;
using Words = std::vector<std::string>;

/// Each test begins and ends with the root order.
class Collation : public testing::Test {
 protected:
  ~Collation() override { orderStringsBy("und"); }

  static Words sorted(Words words) {
    std::sort(words.begin(), words.end(),
              [](const std::string& a, const std::string& b) { return compareStrings(a, b) < 0; });
    return words;
  }
};

const Words kWords = {"zebra", "\xC3\xB6l", "Apfel", "apfel", "B", "10", "9"};  // "o-umlautl"

TEST_F(Collation, TheRootOrderHoldsUnlessOneIsChosen) {
  const Words root = {"10", "9", "apfel", "Apfel", "B", "\xC3\xB6l", "zebra"};
  EXPECT_EQ(sorted(kWords), root);
  orderStringsBy("und");
  EXPECT_EQ(sorted(kWords), root);
}

TEST_F(Collation, TheEnvironmentNeverMatters) {
  const Words before = sorted(kWords);
  for (const char* locale : {"sv_SE.UTF-8", "C", "en_US_POSIX"}) {
    ::setenv("LC_ALL", locale, 1);
    Words words;
    std::thread([&words] { words = sorted(kWords); }).join();
    ::unsetenv("LC_ALL");
    EXPECT_EQ(words, before) << locale;
  }
}

TEST_F(Collation, ALanguageHasItsOwnOrder) {
  orderStringsBy("de-DE");
  EXPECT_EQ(sorted({"zebra", "\xC3\xB6l"}), (Words{"\xC3\xB6l", "zebra"}));
  orderStringsBy("sv");
  EXPECT_EQ(sorted({"zebra", "\xC3\xB6l"}), (Words{"zebra", "\xC3\xB6l"}));
}

TEST_F(Collation, OneChoiceHoldsInEveryThread) {
  orderStringsBy("sv-SE");
  Words words;
  std::thread([&words] { words = sorted({"zebra", "\xC3\xB6l"}); }).join();
  EXPECT_EQ(words, (Words{"zebra", "\xC3\xB6l"}));
}

TEST_F(Collation, ATagMayAskForMore) {
  orderStringsBy("und-u-kn");
  EXPECT_EQ(sorted({"10", "9"}), (Words{"9", "10"}));
  orderStringsBy("en-u-kf-upper");
  EXPECT_EQ(sorted({"a", "A"}), (Words{"A", "a"}));
  orderStringsBy("de-u-co-phonebk");  // "o-umlaut" as "oe"
  EXPECT_EQ(sorted({"of", "\xC3\xB6l"}), (Words{"\xC3\xB6l", "of"}));
}

TEST_F(Collation, WhatIsNotATagIsRefused) {
  for (const char* tag : {"", "de_DE", "sv_SE.UTF-8", "-de", "de-", "de--DE", "d", "C", "a1",
                          "deutschland", "x-own", "und-x"}) {
    EXPECT_THROW(orderStringsBy(tag), std::invalid_argument) << tag;
  }
  EXPECT_THROW(orderStringsBy(std::string(5000, 'q')), std::invalid_argument);
}

TEST_F(Collation, ALanguageWithoutDataIsRefused) {
  orderStringsBy("sv");
  for (const char* tag :
       {"tlh", "xx", "xx-YY", "i-klingon", "qaa", "de-u-co-nosuch", "de-u-kn-maybe"}) {
    EXPECT_THROW(orderStringsBy(tag), std::invalid_argument) << tag;
  }
  EXPECT_EQ(sorted({"zebra", "\xC3\xB6l"}), (Words{"zebra", "\xC3\xB6l"})) << "still the old one";
}

TEST_F(Collation, WhatALanguageSeesAsEqualIsOrderedByBytes) {
  orderStringsBy("und-u-ks-level1");
  EXPECT_EQ(sorted({"a", "A", "\xC3\xA1"}), (Words{"A", "a", "\xC3\xA1"}));
}

TEST_F(Collation, OnlyEqualBytesAreEqual) {
  EXPECT_EQ(compareStrings("abc", "abc"), 0);
  EXPECT_EQ(compareStrings("", ""), 0);
  const std::string composed = "\xC3\xA9";     // e with acute, one code point
  const std::string decomposed = "e\xCC\x81";  // the same letter, two code points
  EXPECT_NE(compareStrings(composed, decomposed), 0);
  EXPECT_NE(compareStrings("a\x01", "a"), 0);    // ignorable for every locale
  EXPECT_NE(compareStrings("\xFF", "\xFE"), 0);  // not UTF-8
}

TEST_F(Collation, IsATotalOrder) {
  const Words words = {"",      " ",     "a",        "A",         "a ",   " a",
                       "ab",    "B",     "\xC3\xA9", "e\xCC\x81", "e",    "f",
                       "a\x01", "a\x02", "\xFF",     "\xFE",      "\xC3", "\xEF\xBF\xBD",
                       "10",    "9",     "-1"};
  for (const std::string& a : words) {
    for (const std::string& b : words) {
      EXPECT_EQ(compareStrings(a, b) < 0, compareStrings(b, a) > 0) << a << '|' << b;
      EXPECT_EQ(compareStrings(a, b) == 0, a == b) << a << '|' << b;
      for (const std::string& c : words) {
        if (compareStrings(a, b) < 0 && compareStrings(b, c) < 0) {
          EXPECT_LT(compareStrings(a, c), 0) << a << '|' << b << '|' << c;
        }
      }
    }
  }
}

}  // namespace
