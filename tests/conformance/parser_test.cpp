// The parsed command.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/output.h"
#include "host/parser.h"
#include "tests/conformance/host_under_test.h"

namespace {

using conformance::numbers;
using conformance::open;
using conformance::Situation;

ParamDescriptor param(const std::string& name, UPSpecTypes::ParamSpec spec,
                      bool valueRequired = true) {
  return ParamDescriptor(name, spec, false, valueRequired, UPSpecTypes::kNoBrackets);
}

/// A syntax with one of everything.
void describe(CommandDescriptor& command) {
  SubComDescriptor design("ONESAMPLE", UPSpecTypes::kSubCommand, false, false);
  design.setExportParamDesc(UPSpecTypes::kTokens, true);
  ParamDescriptor number = param("TESTVAL", UPSpecTypes::kNumber);
  number.setLowerBoundary(0, UPSpecTypes::kLowerExclusive);
  number.setUpperBoundary(1, UPSpecTypes::kUpperExclusive);
  design.addParamDesc(number);
  ParamDescriptor list = param("CITYPES", UPSpecTypes::kKeywordList);
  for (const char* keyword : {"WALD", "LOGIT", "ALL"}) list.addStringValue(keyword);
  design.addParamDesc(list);
  ParamDescriptor select = param("SELECT", UPSpecTypes::kQualified);
  select.addQualifDesc("MIDPOINT");
  select.addQualifDesc(param("CUTPOINT", UPSpecTypes::kNumber));
  select.addQualifDesc(param("LEVEL", UPSpecTypes::kTokens, false));
  design.addParamDesc(select);
  command.addSubComDesc(design);
  SubComDescriptor missing("MISSING", UPSpecTypes::kSubCommand, false, false);
  ParamDescriptor scope = param("SCOPE", UPSpecTypes::kKeyword);
  scope.addStringValue("ANALYSIS");
  scope.addStringValue("LISTWISE");
  missing.addParamDesc(scope);
  command.addSubComDesc(missing);
}

/// A command, parsed; everything stays alive while the tree is read.
struct Parsed {
  explicit Parsed(const std::string& command) : host(openWith(command)) {
    describe(syntax);
    UniversalParser parser(tokens, spec, syntax);
    result = parser.getCommandSpecifications();
  }
  static std::unique_ptr<conformance::OpenHost> openWith(const std::string& command) {
    Situation situation{{numbers("a", {1}), numbers("b", {1}), numbers("with", {1})}};
    situation.command = command;
    return open(situation);
  }
  SubComObj& design() { return *spec.getSubComObj("ONESAMPLE"); }

  std::unique_ptr<conformance::OpenHost> host;
  BpProcedure procedure{"Procedure", 10};
  ZELK_TokenSequence tokens{true};
  ProcedureDataSource source;
  CommandDescriptor syntax{"PROPORTIONS", "Proportions"};
  CommandSpec spec;
  int result = -1;
};

TEST(Parser, ZeroMeansParsed) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a /MISSING SCOPE=LISTWISE.");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.spec.getSubComListSize(), 2);
  EXPECT_NE(parsed.spec.getSubComObj("ONESAMPLE"), nullptr);
  EXPECT_EQ(parsed.spec.getSubComObj("PAIREDSAMPLES"), nullptr);
  EXPECT_EQ(parsed.design().getExternalName(), "ONESAMPLE");
  EXPECT_EQ(parsed.design().getParamObj("TESTVAL"), nullptr);
}

TEST(Parser, TokenKinds) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a, B 'it''s' -2.5 \"with\" WITH by.");
  ASSERT_EQ(parsed.result, 0);
  ParamObj* list = parsed.design().exportParamObj();
  ASSERT_NE(list, nullptr);
  const std::vector<TokenInfoObj>& tokens = list->getTokenList();
  ASSERT_EQ(tokens.size(), 7u) << "separators are left out";
  EXPECT_EQ(tokens[0].kind(), TokenInfoObj::Kind::kWord);
  EXPECT_EQ(tokens[1].getText(), "B");
  EXPECT_EQ(tokens[0].getUpText(), "A");
  EXPECT_EQ(tokens[2].kind(), TokenInfoObj::Kind::kString);
  EXPECT_EQ(tokens[2].getText(), "it's");
  EXPECT_TRUE(tokens[3].isNumber());
  EXPECT_EQ(tokens[3].getNumber(), -2.5);
  EXPECT_FALSE(tokens[4].isReservedWord()) << "quoted";
  EXPECT_EQ(tokens[4].getOperatorCode(), 0);
  EXPECT_EQ(tokens[5].getOperatorCode(), kOperatorWith);
  EXPECT_EQ(tokens[6].getOperatorCode(), kOperatorBy);
  EXPECT_TRUE(tokens[6].isReservedWord());
  for (size_t i = 1; i < tokens.size(); ++i) {
    EXPECT_LT(tokens[i - 1].position(), tokens[i].position());
  }
}

TEST(Parser, AParenthesisedWordBelongsToTheUnnamedList) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a WITH b (PAIRED) TESTVAL=0.25.");
  ASSERT_EQ(parsed.result, 0);
  const std::vector<TokenInfoObj>& tokens = parsed.design().exportParamObj()->getTokenList();
  ASSERT_EQ(tokens.size(), 6u);
  EXPECT_EQ(tokens[3].kind(), TokenInfoObj::Kind::kSymbol);
  EXPECT_EQ(tokens[3].getText(), "(");
  EXPECT_EQ(tokens[4].getUpText(), "PAIRED");
  EXPECT_EQ(tokens[5].getText(), ")");
}

TEST(Parser, AnAbsentListReachesTheProcedureEmpty) {
  Parsed parsed("PROPORTIONS /ONESAMPLE TESTVAL=0.25.");
  ASSERT_EQ(parsed.result, 0);
  ParamObj* list = parsed.design().exportParamObj();
  EXPECT_TRUE(list == nullptr || list->getTokenList().empty());
}

TEST(Parser, KeywordsKeepOrderAndRepeats) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a CITYPES=logit WALD Logit ALL.");
  ASSERT_EQ(parsed.result, 0);
  ParamObj* list = parsed.design().getParamObj("CITYPES");
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->getUpStringList(), (std::vector<std::string>{"LOGIT", "WALD", "LOGIT", "ALL"}));
}

TEST(Parser, OneKeyword) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a /MISSING SCOPE=listwise.");
  ASSERT_EQ(parsed.result, 0);
  const ParamObj* scope = parsed.spec.getSubComObj("MISSING")->getParamObj("SCOPE");
  ASSERT_NE(scope, nullptr);
  EXPECT_TRUE(scope->isStringValueCase("LISTWISE"));
  EXPECT_FALSE(scope->isStringValueCase("ANALYSIS"));
}

TEST(Parser, NumbersAreStoredOrThePresetStays) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a TESTVAL=0.25 CITYPES=WALD.");
  ASSERT_EQ(parsed.result, 0);
  double value = 0.5;
  EXPECT_TRUE(parsed.design().getParamObj("TESTVAL")->getNumberValue(value));
  EXPECT_EQ(value, 0.25);
  value = 0.5;
  EXPECT_FALSE(parsed.design().getParamObj("CITYPES")->getNumberValue(value));
  EXPECT_EQ(value, 0.5);
}

TEST(Parser, QualifiersWithAndWithoutValues) {
  const struct {
    const char* written;
    const char* name;
    bool bare;
    size_t tokens;
  } cases[] = {{"midpoint", "MIDPOINT", true, 0},
               {"CUTPOINT(3)", "CUTPOINT", false, 1},
               {"LEVEL", "LEVEL", true, 0},
               {"Level(1 'x', -3)", "LEVEL", false, 3}};
  for (const auto& [written, name, bare, count] : cases) {
    Parsed parsed(std::string("PROPORTIONS /ONESAMPLE a SELECT=") + written + ".");
    ASSERT_EQ(parsed.result, 0) << written;
    std::string given;
    ParamObj* qualifier = nullptr;
    ASSERT_TRUE(parsed.design().getParamObj("SELECT")->getStringAndQual(given, qualifier));
    EXPECT_EQ(given, name);
    // A bare keyword may come without an object; LEVEL has one that says that it stands bare.
    if (qualifier == nullptr) {
      EXPECT_STREQ(name, "MIDPOINT");
      continue;
    }
    EXPECT_EQ(qualifier->isLeadingToken(), bare) << written;
    EXPECT_EQ(qualifier->getTokenList().size(), count) << written;
  }
}

TEST(Parser, TheNumberOfAQualifier) {
  Parsed parsed("PROPORTIONS /ONESAMPLE a SELECT=CUTPOINT(3).");
  ASSERT_EQ(parsed.result, 0);
  std::string given;
  ParamObj* qualifier = nullptr;
  ASSERT_TRUE(parsed.design().getParamObj("SELECT")->getStringAndQual(given, qualifier));
  ASSERT_NE(qualifier, nullptr);
  double value = 0;
  EXPECT_TRUE(qualifier->getNumberValue(value));
  EXPECT_EQ(value, 3);
}

TEST(Parser, ACommandWithoutSubcommands) {
  Parsed parsed("PROPORTIONS.");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.spec.getSubComListSize(), 0);
}

}  // namespace
