#include "workbench/manual/manual.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace workbench {
namespace {

TEST(Manual, HasTheSectionsOfTheCommand) {
  const auto& sections = commandSections();
  ASSERT_GE(sections.size(), 6U);
  EXPECT_EQ(sections[0].heading, "The command");
  EXPECT_NE(sections[0].text.find("/ONESAMPLE variables"), std::string::npos);
  for (const char* name : {"ONESAMPLE", "PAIREDSAMPLES", "INDEPENDENTSAMPLES", "SUCCESS"}) {
    EXPECT_TRUE(std::any_of(sections.begin(), sections.end(), [name](const auto& section) {
      return section.heading == name;
    })) << name;
  }
}

TEST(Manual, HasEveryMethodOfEachDesign) {
  const auto& designs = manualDesigns();
  ASSERT_EQ(designs.size(), 3U);
  const auto count = [](const ManualDesign& design, bool intervals) {
    return std::count_if(design.methods.begin(), design.methods.end(),
                         [intervals](const auto& m) { return m.isInterval == intervals; });
  };
  EXPECT_EQ(count(designs[0], true), 9);
  EXPECT_EQ(count(designs[0], false), 6);
  EXPECT_EQ(count(designs[1], true), 5);
  EXPECT_EQ(count(designs[1], false), 6);
  EXPECT_EQ(count(designs[2], true), 7);
  EXPECT_EQ(count(designs[2], false), 5);
  for (const ManualDesign& design : designs) {
    EXPECT_FALSE(design.title.empty());
    EXPECT_FALSE(design.choice.empty());
    for (const ManualMethod& method : design.methods) {
      EXPECT_FALSE(method.text.empty()) << method.keyword;
      EXPECT_EQ(method.text.find('#'), std::string::npos) << method.keyword;
    }
  }
}

TEST(Manual, PlainTextHasAParagraphALine) {
  EXPECT_EQ(
      plainText("`A` is *so*:\nsee [there](x.md).\n\n- one\n  more\n- two\n\n    code  `x`\n"),
      "A is so: see there.\n\n- one more\n- two\n\n    code  `x`");
  EXPECT_EQ(plainText("a [b] c"), "a [b] c");
  EXPECT_EQ(plainText("| a | b |\n| c | d |"), "| a | b |\n| c | d |");
  EXPECT_EQ(plainText(""), "");
}

}  // namespace
}  // namespace workbench
