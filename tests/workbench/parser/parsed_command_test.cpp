// What the parsed command answers beyond what the text cases show.
#include <gtest/gtest.h>

#include "tests/workbench/parser/test_grammar.h"
#include "tests/workbench/parser/test_session.h"

namespace parser_tests {
namespace {

/// Parses a command of the test grammar; it must be right.
class Parsed {
 public:
  explicit Parsed(const std::string& text, bool oneMethod = false) : session_(text) {
    if (oneMethod) session_.wantOneMethod();
    ZELK_TokenSequence tokens(true);
    CommandDescriptor syntax("PROPORTIONS", "Proportions");
    describeCommand(syntax);
    EXPECT_EQ(UniversalParser(tokens, spec, syntax).getCommandSpecifications(), 0);
  }
  CommandSpec spec;

 private:
  TestSession session_;
};

TEST(ParsedCommand, AbsentPartsAreNull) {
  Parsed parsed("PROPORTIONS /MISSING SCOPE=LISTWISE");
  EXPECT_EQ(parsed.spec.getSubComListSize(), 1);
  EXPECT_EQ(parsed.spec.getSubComObj("SUCCESS"), nullptr);
  EXPECT_EQ(parsed.spec.getSubComObj("missing"), nullptr);
  SubComObj* const missing = parsed.spec.getSubComObj("MISSING");
  ASSERT_NE(missing, nullptr);
  EXPECT_EQ(missing->exportParamObj(), nullptr);
  EXPECT_EQ(missing->getParamObj("USERMISSING"), nullptr);
  EXPECT_EQ(missing->getExternalName(), "MISSING");
}

TEST(ParsedCommand, OneKeyword) {
  Parsed parsed("PROPORTIONS /MISSING SCOPE=listwise");
  const ParamObj* const scope = parsed.spec.getSubComObj("MISSING")->getParamObj("SCOPE");
  ASSERT_NE(scope, nullptr);
  EXPECT_TRUE(scope->isStringValueCase("LISTWISE"));
  EXPECT_FALSE(scope->isStringValueCase("ANALYSIS"));
  double untouched = 7.0;
  EXPECT_FALSE(scope->getNumberValue(untouched));
  EXPECT_EQ(untouched, 7.0);
}

TEST(ParsedCommand, ANumber) {
  Parsed parsed("PROPORTIONS /CRITERIA CILEVEL=90");
  const ParamObj* const level = parsed.spec.getSubComObj("CRITERIA")->getParamObj("CILEVEL");
  double number = 95.0;
  EXPECT_TRUE(level->getNumberValue(number));
  EXPECT_EQ(number, 90.0);
  std::string name = "untouched";
  ParamObj* qualifier = nullptr;
  EXPECT_FALSE(level->getStringAndQual(name, qualifier));
  EXPECT_EQ(name, "untouched");
}

TEST(ParsedCommand, AQualifierWithTheTextOfItsNumber) {
  Parsed parsed("PROPORTIONS /SUCCESS VALUE=cutpoint(+1.50)");
  std::string name;
  ParamObj* cut = nullptr;
  ASSERT_TRUE(
      parsed.spec.getSubComObj("SUCCESS")->getParamObj("VALUE")->getStringAndQual(name, cut));
  EXPECT_EQ(name, "CUTPOINT");
  double number = 0.0;
  ASSERT_TRUE(cut->getNumberValue(number));
  EXPECT_EQ(number, 1.5);
  ASSERT_EQ(cut->getTokenList().size(), 1u);
  EXPECT_EQ(cut->getTokenList()[0].getText(), "+1.50");
  EXPECT_FALSE(cut->isLeadingToken());
}

TEST(ParsedCommand, DescriptorsAreCopies) {
  ParamDescriptor first("P", UPSpecTypes::kKeyword, false, true, UPSpecTypes::kNoBrackets);
  first.addStringValue("X");
  SubComDescriptor subcommand("S", UPSpecTypes::kSubCommand, false, false);
  subcommand.addParamDesc(first);
  first.addStringValue("LATER");
  CommandDescriptor command("PROPORTIONS", "");
  command.addSubComDesc(subcommand);
  subcommand.addParamDesc(first);

  TestSession session("PROPORTIONS /S P=LATER");
  ZELK_TokenSequence tokens(true);
  CommandSpec spec;
  EXPECT_NE(UniversalParser(tokens, spec, command).getCommandSpecifications(), 0);
  ASSERT_EQ(session.messages().size(), 1u);
  EXPECT_NE(session.messages()[0].arguments[4].find("P takes one of X."), std::string::npos);
}

TEST(ParsedCommand, NoRunningCommandIsAnErrorOfTheHost) {
  TestSession session("");
  EXPECT_THROW(ZELK_TokenSequence(true), std::logic_error);
}

using Words = std::vector<std::string>;

/// The keywords of a design's list of methods.
Words methods(Parsed& parsed, const char* design, const char* list) {
  const ParamObj* found = parsed.spec.getSubComObj(design)->getParamObj(list);
  return found == nullptr ? Words{"absent"} : found->getUpStringList();
}

TEST(OneMethod, TakesThePlaceOfAllThatAreAskedForOrNot) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a TESTTYPES=EXACT MIDP", true);
  EXPECT_EQ(methods(parsed, "ONESAMPLE", "TESTTYPES"), Words{"WALD"});
  EXPECT_EQ(methods(parsed, "ONESAMPLE", "CITYPES"), Words{"WALD"});
}

TEST(OneMethod, LeavesNoneAndEverythingElse) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a b CITYPES=NONE TESTVAL=0.25 /MISSING SCOPE=LISTWISE",
                true);
  EXPECT_EQ(methods(parsed, "ONESAMPLE", "CITYPES"), Words{"NONE"});
  EXPECT_EQ(methods(parsed, "ONESAMPLE", "TESTTYPES"), Words{"WALD"});
  double value = 0;
  ASSERT_TRUE(parsed.spec.getSubComObj("ONESAMPLE")->getParamObj("TESTVAL")->getNumberValue(value));
  EXPECT_EQ(value, 0.25);
  EXPECT_EQ(parsed.spec.getSubComObj("ONESAMPLE")->exportParamObj()->getTokenList().size(), 2U);
  EXPECT_EQ(parsed.spec.getSubComObj("MISSING")->getParamObj("CITYPES"), nullptr);
}

TEST(OneMethod, IsForRunsThatWantIt) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a CITYPES=ANSCOMBE");
  EXPECT_EQ(methods(parsed, "ONESAMPLE", "CITYPES"), Words{"ANSCOMBE"});
  EXPECT_EQ(methods(parsed, "ONESAMPLE", "TESTTYPES"), Words{"absent"});
}

}  // namespace
}  // namespace parser_tests
