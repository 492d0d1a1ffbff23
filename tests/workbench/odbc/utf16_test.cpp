#include "workbench/odbc/utf16.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

std::string thereAndBack(const std::string& text) {
  const std::vector<SQLWCHAR> units = utf16Of(text);
  std::string back;
  appendUtf8(units.data(), units.size() - 1, back);
  return back;
}

TEST(Utf16, KeepsCharactersOfEveryLength) {
  const std::string text =
      "a\x7F"
      "é߿"
      "ࠀ€\uFFFD"
      "😀\U0010FFFF";
  EXPECT_EQ(thereAndBack(text), text);
  EXPECT_EQ(utf16Of("😀"), (std::vector<SQLWCHAR>{0xD83D, 0xDE00, 0}));
}

TEST(Utf16, ReplacesWhatIsNoCharacter) {
  EXPECT_EQ(thereAndBack("a\xFF"), "a\uFFFD");
  const std::vector<SQLWCHAR> broken = {'a', 0xD83D, 'b', 0xDE00, 0xD83D};
  std::string text;
  appendUtf8(broken.data(), broken.size(), text);
  EXPECT_EQ(text, "a\uFFFDb\uFFFD\uFFFD");
}

}  // namespace
}  // namespace workbench
