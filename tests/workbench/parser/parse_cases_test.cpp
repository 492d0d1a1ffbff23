// Whole commands in text files: what a command is parsed into, and what is said about a wrong one.
#include <gtest/gtest.h>

#include "tests/workbench/parser/case_file.h"
#include "tests/workbench/parser/test_grammar.h"
#include "tests/workbench/parser/test_session.h"

namespace parser_tests {
namespace {

class ParseCases : public testing::TestWithParam<TextCase> {};

TEST_P(ParseCases, AreParsedOrRefused) {
  TestSession session(GetParam().input);
  ZELK_TokenSequence tokens(true);
  CommandSpec parsed;
  CommandDescriptor syntax("PROPORTIONS", "Proportions");
  describeCommand(syntax);
  const int answer = UniversalParser(tokens, parsed, syntax).getCommandSpecifications();
  if (answer == 0) {
    EXPECT_TRUE(session.messages().empty());
    EXPECT_EQ(treeText(parsed), GetParam().expected);
  } else {
    ASSERT_EQ(session.messages().size(), 1u);
    EXPECT_TRUE(session.messages()[0].isError);
    EXPECT_EQ(shown(session.messages()[0]), GetParam().expected);
  }
}

std::string testName(const testing::TestParamInfo<TextCase>& info) {
  std::string name;
  for (const char c : info.param.name)
    name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Accepted, ParseCases, testing::ValuesIn(readCases("accepted.txt")),
                         testName);
INSTANTIATE_TEST_SUITE_P(Refused, ParseCases, testing::ValuesIn(readCases("refused.txt")),
                         testName);

}  // namespace
}  // namespace parser_tests
