// Which variables a command needs.
#include <gtest/gtest.h>

#include "tests/workbench/parser/test_session.h"
#include "workbench/parser/variable_names.h"

namespace parser_tests {
namespace {

/// The names of the variables that a command mentions, in file order.
std::string mentioned(const std::string& text) {
  workbench::MemoryDataset dataset;
  fillDataset(dataset);
  const std::vector<workbench::CommandTokens> commands = workbench::splitCommands(text);
  std::string names;
  for (const VarIndex index : workbench::mentionedVariables(commands.at(0), dataset)) {
    names += (names.empty() ? "" : "|") + dataset.declaration(index).name;
  }
  return names;
}

TEST(MentionedVariables, AreThoseOfTheUnnamedLists) {
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE b A TESTVAL=0.5"), "a|b");
  EXPECT_EQ(mentioned("PROPORTIONS ONESAMPLE b, a"), "a|b");
  EXPECT_EQ(mentioned("PROPORTIONS /PAIREDSAMPLES a b WITH \"Smoker status\" (PAIRED)"),
            "a|b|Smoker status");
  EXPECT_EQ(mentioned("PROPORTIONS /INDEPENDENTSAMPLES c BY s SELECT=LEVEL(1 2)"), "c|s");
  EXPECT_EQ(mentioned("PROPORTIONS /SUCCESS VALUE=LAST /ONESAMPLE gr\xC3\xB6\xC3\x9F"
                      "e"),
            "Gr\xC3\xB6\xC3\x9F"
            "e");
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE w g"), "w|g");
}

TEST(MentionedVariables, AreNotTheValuesOfParameters) {
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE a TESTTYPES=b c"), "a");
  EXPECT_EQ(mentioned("PROPORTIONS /SUCCESS VALUE=LEVEL(a 'b')"), "");
}

TEST(MentionedVariables, TakeRangesAndAll) {
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE a TO \"Smoker status\""), "a|b|c|s|Smoker status");
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE c TO a"), "a|c");
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE ALL"),
            "a|b|c|s|Smoker status|with|d|t|Gr\xC3\xB6\xC3\x9F"
            "e");
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE 'all'"), "");
}

TEST(MentionedVariables, PassOverErrors) {
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE nobody a ( b"), "a|b");
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE a TO nobody b"), "a|b");
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE TO b"), "b");
  EXPECT_EQ(mentioned("PROPORTIONS /ONESAMPLE a TO"), "a");
  EXPECT_EQ(mentioned("a = % b"), "");
}

}  // namespace
}  // namespace parser_tests
