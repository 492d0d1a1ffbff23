#include "workbench/text/collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using workbench::compareStrings;

constexpr std::array kVariables = {"LC_ALL", "LC_COLLATE", "LANG"};

/// Sets the three variables (an empty text: unset) and puts them back.
class Environment {
 public:
  explicit Environment(const std::map<std::string, std::string>& values) {
    for (const char* name : kVariables) {
      const char* value = std::getenv(name);
      saved_[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
      const auto wanted = values.find(name);
      set(name, wanted == values.end() ? std::nullopt : std::optional<std::string>(wanted->second));
    }
  }
  ~Environment() {
    for (const auto& [name, value] : saved_) set(name.c_str(), value);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  static void set(const char* name, const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name, value->c_str(), 1);
    } else {
      ::unsetenv(name);
    }
  }
  std::map<std::string, std::optional<std::string>> saved_;
};

/// The words in the order of a locale. The locale is read once per thread, so each order has a
/// thread of its own.
std::vector<std::string> sorted(const std::map<std::string, std::string>& environment,
                                std::vector<std::string> words) {
  const Environment guard(environment);
  std::thread([&words] {
    std::sort(words.begin(), words.end(),
              [](const std::string& a, const std::string& b) { return compareStrings(a, b) < 0; });
  }).join();
  return words;
}

using Words = std::vector<std::string>;

TEST(Collation, TheCLocaleHasTheOrderOfAscii) {
  const Words ascii = {"B", "Z", "a", "c"};
  EXPECT_EQ(sorted({{"LC_ALL", "C"}}, {"c", "a", "Z", "B"}), ascii);
  EXPECT_EQ(sorted({{"LC_ALL", "C.UTF-8"}}, {"c", "a", "Z", "B"}), ascii);
  EXPECT_EQ(sorted({{"LANG", "POSIX"}}, {"c", "a", "Z", "B"}), ascii);
  EXPECT_EQ(sorted({}, {"c", "a", "Z", "B"}), ascii);
}

TEST(Collation, ALocaleHasItsOwnOrder) {
  const Words words = {"zebra", "\xC3\xB6l", "Apfel", "apfel"};  // "öl"
  EXPECT_EQ(sorted({{"LANG", "de_DE.UTF-8"}}, words),
            (Words{"apfel", "Apfel", "\xC3\xB6l", "zebra"}));
  EXPECT_EQ(sorted({{"LANG", "sv_SE.UTF-8"}}, words),
            (Words{"apfel", "Apfel", "zebra", "\xC3\xB6l"}));
}

TEST(Collation, TheMoreSpecificVariableOfTheEnvironmentWins) {
  const Words words = {"zebra", "\xC3\xB6l"};
  const Words german = {"\xC3\xB6l", "zebra"};
  const Words swedish = {"zebra", "\xC3\xB6l"};
  EXPECT_EQ(sorted({{"LC_COLLATE", "de_DE"}, {"LANG", "sv_SE"}}, words), german);
  EXPECT_EQ(sorted({{"LC_ALL", "sv_SE"}, {"LC_COLLATE", "de_DE"}}, words), swedish);
  EXPECT_EQ(sorted({{"LC_ALL", ""}, {"LC_COLLATE", "de_DE"}}, words), german);
}

TEST(Collation, AnUnknownLocaleHasTheRootOrder) {
  const Words root = {"a", "B", "c"};
  EXPECT_EQ(sorted({{"LANG", "xx_YY.UTF-8"}}, {"c", "B", "a"}), root);
  EXPECT_EQ(sorted({{"LANG", std::string(5000, 'q')}}, {"c", "B", "a"}), root);
}

TEST(Collation, OnlyEqualBytesAreEqual) {
  EXPECT_EQ(compareStrings("abc", "abc"), 0);
  EXPECT_EQ(compareStrings("", ""), 0);
  const std::string composed = "\xC3\xA9";     // e with acute, one code point
  const std::string decomposed = "e\xCC\x81";  // the same letter, two code points
  EXPECT_NE(compareStrings(composed, decomposed), 0);
  EXPECT_NE(compareStrings("a\x01", "a"), 0);    // ignorable for every locale
  EXPECT_NE(compareStrings("\xFF", "\xFE"), 0);  // no UTF-8
}

TEST(Collation, IsATotalOrder) {
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
