// Text functions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "host/strings.h"
#include "tests/conformance/host_under_test.h"

namespace {

class Strings : public testing::Test {
 protected:
  static std::string with(char* (*function)(char*), std::string text) {
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back('\0');
    EXPECT_EQ(function(buffer.data()), buffer.data());
    return buffer.data();
  }
  static int compare(const std::string& a, const std::string& b) {
    const int order = ZELKMBstrncoll_A(a.c_str(), b.c_str(), std::max(a.size(), b.size()));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
  }

  std::unique_ptr<conformance::OpenHost> host_ =
      conformance::open({{conformance::numbers("x", {1})}});
};

TEST_F(Strings, TrimmingTakesTrailingBlanksOnly) {
  EXPECT_EQ(with(ZELKMBstrtrim_A, "abc   "), "abc");
  EXPECT_EQ(with(ZELKMBstrtrim_A, "  abc"), "  abc");
  EXPECT_EQ(with(ZELKMBstrtrim_A, "a b "), "a b");
  EXPECT_EQ(with(ZELKMBstrtrim_A, "    "), "");
  EXPECT_EQ(with(ZELKMBstrtrim_A, ""), "");
}

TEST_F(Strings, FoldingInPlace) {
  EXPECT_EQ(with(ZELKMBstrupr_A, "aBc1"), "ABC1");
  EXPECT_EQ(with(ZELKMBstrlwr_A, "aBc1"), "abc1");
}

TEST_F(Strings, OnlyEqualBytesCompareEqual) {
  const std::vector<std::string> texts{"",  "a",       "A", "b",      "ab",      "a b",
                                       "á", "e\u0301", "é", "straße", "strasse", " a"};
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      EXPECT_EQ(compare(a, b) == 0, a == b) << a << " and " << b;
      EXPECT_EQ(compare(a, b), -compare(b, a)) << a << " and " << b;
      for (const std::string& c : texts) {
        if (compare(a, b) < 0 && compare(b, c) < 0) {
          EXPECT_LT(compare(a, c), 0) << a << ", " << b << ", " << c;
        }
      }
    }
  }
  EXPECT_LT(compare("a", "b"), 0);
}

TEST_F(Strings, AtMostNBytesCount) {
  EXPECT_EQ(ZELKMBstrncoll_A("abc", "abd", 2), 0);
  EXPECT_NE(ZELKMBstrncoll_A("abc", "abd", 3), 0);
  EXPECT_EQ(ZELKMBstrncoll_A("abc", "abc", 100), 0);
  EXPECT_LT(ZELKMBstrncoll_A("ab", "abc", 3), 0);
  EXPECT_EQ(ZELKMBstrncoll_A("x", "y", 0), 0);
}

}  // namespace
