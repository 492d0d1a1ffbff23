// Variable lists: names, ranges, ALL, qualifiers, common variables, values of a variable.
#include <gtest/gtest.h>

#include "host/parser.h"
#include "tests/workbench/parser/case_file.h"
#include "tests/workbench/parser/test_session.h"

namespace parser_tests {
namespace {

/// The tokens of the session's command without its first word.
std::vector<TokenInfoObj> listTokens(const TestSession& session) {
  std::vector<TokenInfoObj> tokens = session.command().tokens();
  tokens.erase(tokens.begin());
  return tokens;
}

std::string namesOf(TestSession& session, const std::vector<VarIndex>& variables) {
  std::string names;
  for (const VarIndex index : variables) {
    names += (names.empty() ? "" : "|") + session.dataset().declaration(index).name;
  }
  return names;
}

class VariableLists : public testing::TestWithParam<TextCase> {};

TEST_P(VariableLists, AreResolvedOrRefused) {
  TestSession session("LIST " + GetParam().input);
  ProcedureDataSource source;
  VarSpecObj list("", "ONESAMPLE", source);
  if (list.ValidateVariables(listTokens(session), kKeepRepeats)) {
    EXPECT_TRUE(session.messages().empty());
    EXPECT_EQ(namesOf(session, list.GetValidVarList()), GetParam().expected);
    return;
  }
  EXPECT_TRUE(list.GetValidVarList().empty());
  ASSERT_EQ(session.messages().size(), 1u);
  EXPECT_EQ(shown(session.messages()[0]), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, VariableLists, testing::ValuesIn(readCases("variable_lists.txt")));

TEST(VariableList, StopsAtAParenthesisWhereQualifiersAreAllowed) {
  TestSession session("LIST a b (PAIRED x 1)");
  ProcedureDataSource source;
  VarSpecObj list("WITH", "PAIREDSAMPLES", source);
  list.SetAllowQualifiers(true);
  ASSERT_TRUE(list.ValidateVariables(listTokens(session), kKeepRepeats));
  EXPECT_EQ(namesOf(session, list.GetValidVarList()), "a|b");
  EXPECT_TRUE(list.HasQualifier());
  ASSERT_EQ(list.GetQualTokenList().size(), 3u);
  EXPECT_EQ(list.GetQualTokenList()[0].getText(), "PAIRED");
}

TEST(VariableList, TellsEmptyParenthesesFromNone) {
  for (const bool written : {true, false}) {
    TestSession session(written ? "LIST a ()" : "LIST a");
    ProcedureDataSource source;
    VarSpecObj list("WITH", "PAIREDSAMPLES", source);
    list.SetAllowQualifiers(true);
    ASSERT_TRUE(list.ValidateVariables(listTokens(session), kKeepRepeats));
    EXPECT_EQ(list.HasQualifier(), written);
    EXPECT_TRUE(list.GetQualTokenList().empty());
  }
}

/// What is said about a list that may carry a qualifier.
std::string qualifiedError(const std::string& text) {
  TestSession session("LIST " + text);
  ProcedureDataSource source;
  VarSpecObj list("WITH", "PAIREDSAMPLES", source);
  list.SetAllowQualifiers(true);
  EXPECT_FALSE(list.ValidateVariables(listTokens(session), kKeepRepeats));
  EXPECT_EQ(session.messages().size(), 1u);
  return shown(session.messages().at(0));
}

TEST(VariableList, RefusesAQualifierThatIsNotTheEndOrHasNoList) {
  EXPECT_EQ(qualifiedError("a (PAIRED) b"),
            "1:17: Nothing may follow the parenthesis in a variable list.\n"
            "    LIST a (PAIRED) b\n"
            "                    ^");
  EXPECT_EQ(qualifiedError("a (PAIRED"),
            "1:8: The parenthesis is not closed.\n"
            "    LIST a (PAIRED\n"
            "           ^");
  EXPECT_EQ(qualifiedError("(PAIRED)"),
            "1:6: There is no variable in the list after WITH of PAIREDSAMPLES.\n"
            "    LIST (PAIRED)\n"
            "         ^");
}

TEST(VariableList, AQuotedParenthesisClosesNothing) {
  TestSession session("LIST a (')' PAIRED)");
  ProcedureDataSource source;
  VarSpecObj list("WITH", "PAIREDSAMPLES", source);
  list.SetAllowQualifiers(true);
  ASSERT_TRUE(list.ValidateVariables(listTokens(session), kKeepRepeats));
  EXPECT_EQ(list.GetQualTokenList().size(), 2u);
}

/// What is said about an empty list of ONESAMPLE.
std::string emptyError(const std::string& text) {
  TestSession session(text);
  ProcedureDataSource source;
  VarSpecObj list("", "ONESAMPLE", source);
  EXPECT_FALSE(list.ValidateVariables({}, kKeepRepeats));
  return shown(session.messages().at(0));
}

TEST(VariableList, AnEmptyListIsReportedWhereItsVariablesShouldStand) {
  EXPECT_EQ(emptyError("PROPORTIONS /SUCCESS VALUE=LAST /onesample TESTVAL=0.5"),
            "1:44: There is no variable in the variable list of ONESAMPLE.\n"
            "    PROPORTIONS /SUCCESS VALUE=LAST /onesample TESTVAL=0.5\n"
            "                                               ^");
  EXPECT_EQ(emptyError("PROPORTIONS ONESAMPLE /CRITERIA"),
            "1:23: There is no variable in the variable list of ONESAMPLE.\n"
            "    PROPORTIONS ONESAMPLE /CRITERIA\n"
            "                          ^");
  EXPECT_EQ(emptyError("PROPORTIONS /ONESAMPLE."),
            "1:23: There is no variable in the variable list of ONESAMPLE.\n"
            "    PROPORTIONS /ONESAMPLE.\n"
            "                          ^");
}

TEST(VariableList, TakesOneVariable) {
  TestSession session("LIST \"Smoker status\" ALL nobody");
  ProcedureDataSource source;
  VarSpecObj list("BY", "INDEPENDENTSAMPLES", source);
  const std::vector<TokenInfoObj> tokens = listTokens(session);
  EXPECT_EQ(list.ValidateVariable(tokens[0]), 4);
  EXPECT_EQ(list.GetValidVarList(), std::vector<VarIndex>{4});
  EXPECT_TRUE(session.messages().empty());
  EXPECT_LT(list.ValidateVariable(tokens[1]), 0);
  EXPECT_LT(list.ValidateVariable(tokens[2]), 0);
  EXPECT_EQ(session.messages().size(), 2u);
}

TEST(VariableList, TakesIndicesOfTheDataSource) {
  TestSession session("LIST");
  ProcedureDataSource source;
  const CommandDescriptor command("PROPORTIONS", "Proportions");
  VarSpecObj split("SPLIT FILE", command, source);
  EXPECT_TRUE(split.SetVariables({9, 3}, kPlainList));
  EXPECT_EQ(split.GetValidVarList(), (std::vector<VarIndex>{9, 3}));
  VarSpecObj weight("WEIGHT", command, source, true);
  EXPECT_TRUE(weight.SetVariable(8));
  EXPECT_EQ(weight.GetValidVarList(), std::vector<VarIndex>{8});
  EXPECT_TRUE(session.messages().empty());
}

TEST(VariableList, RefusesAStringWeight) {
  TestSession session("LIST");
  ProcedureDataSource source;
  const CommandDescriptor command("PROPORTIONS", "Proportions");
  VarSpecObj weight("WEIGHT", command, source, true);
  EXPECT_FALSE(weight.SetVariable(3));
  ASSERT_EQ(session.messages().size(), 1u);
  EXPECT_EQ(shown(session.messages()[0]), "Weight var ^1 string | s");
  VarSpecObj other("", "ONESAMPLE", source);
  EXPECT_TRUE(other.SetVariable(3));
}

TEST(VariableList, ReportsTheFirstCommonVariableWithItsPlace) {
  TestSession session("LIST b a TO c w");
  ProcedureDataSource source;
  const CommandDescriptor command("PROPORTIONS", "Proportions");
  VarSpecObj weight("WEIGHT", command, source, true);
  VarSpecObj list("", "ONESAMPLE", source);
  ASSERT_TRUE(list.ValidateVariables(listTokens(session), kKeepRepeats));
  EXPECT_TRUE(list.CheckCommonVars(weight));  // the data are unweighted
  ASSERT_TRUE(weight.SetVariable(8));
  EXPECT_FALSE(list.CheckCommonVars(weight));
  ASSERT_EQ(session.messages().size(), 1u);
  EXPECT_EQ(shown(session.messages()[0]),
            "1:15: The variable \"w\" is the weight variable and cannot stand in the variable list "
            "of ONESAMPLE too.\n"
            "    LIST b a TO c w\n"
            "                  ^");
  VarSpecObj by("BY", "INDEPENDENTSAMPLES", source);
  ASSERT_TRUE(by.SetVariable(2));
  EXPECT_FALSE(list.CheckCommonVars(by));
  EXPECT_EQ(shown(session.messages().at(1)),
            "1:8: The variable \"c\" stands in the list after BY of INDEPENDENTSAMPLES and cannot "
            "stand in the variable list of ONESAMPLE too.\n"
            "    LIST b a TO c w\n"
            "           ^");
}

TEST(VariableList, ReportsACommonVariableThatWasNotWritten) {
  TestSession session("LIST a");
  ProcedureDataSource source;
  const CommandDescriptor command("PROPORTIONS", "Proportions");
  VarSpecObj split("SPLIT FILE", command, source);
  VarSpecObj weight("WEIGHT", command, source, true);
  ASSERT_TRUE(split.SetVariables({0, 8}, kPlainList));
  ASSERT_TRUE(weight.SetVariable(8));
  EXPECT_FALSE(split.CheckCommonVars(weight));
  EXPECT_EQ(shown(session.messages().at(0)),
            "Var ^1 common to ^2 and ^3 | w | SPLIT FILE | WEIGHT");
}

TEST(VariableList, IsSilentWhileReportingIsOff) {
  TestSession session("LIST nobody");
  ProcedureDataSource source;
  VarSpecObj list("", "ONESAMPLE", source);
  list.SetErrorReporting(false);
  EXPECT_FALSE(list.ValidateVariables(listTokens(session), kKeepRepeats));
  EXPECT_FALSE(list.ValidateVariables({}, kKeepRepeats));
  EXPECT_LT(list.ValidateVariable(listTokens(session)[0]), 0);
  EXPECT_TRUE(session.messages().empty());
  list.SetErrorReporting(true);
  EXPECT_FALSE(list.ValidateVariables(listTokens(session), kKeepRepeats));
  EXPECT_EQ(session.messages().size(), 1u);
}

TEST(VariableList, DoesNotGrowWithoutEnd) {
  std::string text = "LIST";
  for (int i = 0; i < 200'000; ++i) text += " ALL";
  TestSession session(text);
  ProcedureDataSource source;
  VarSpecObj list("", "ONESAMPLE", source);
  EXPECT_FALSE(list.ValidateVariables(listTokens(session), kKeepRepeats));
  EXPECT_NE(shown(session.messages().at(0)).find("more than a million"), std::string::npos);
}

}  // namespace
}  // namespace parser_tests
