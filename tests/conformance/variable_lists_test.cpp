// Variable lists and values in commands.
#include <gtest/gtest.h>

#include <cstring>
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
using conformance::strings;

Situation fiveVariables() {
  Situation situation{{numbers("a", {1}), numbers("b", {1}), numbers("w", {1}), numbers("r", {1}),
                       strings("s", 10, {"x"})}};
  situation.weight = 2;
  situation.split = {3};
  return situation;
}

TokenInfoObj word(const std::string& text, int code = 0) {
  return TokenInfoObj(TokenInfoObj::Kind::kWord, text, 0, code, 0);
}
TokenInfoObj symbol(const std::string& text) {
  return TokenInfoObj(TokenInfoObj::Kind::kSymbol, text, 0, 0, 0);
}

class VariableLists : public testing::Test {
 protected:
  /// The tokens of a list as the parser gives them, so that reserved words carry the host's codes.
  std::vector<TokenInfoObj> tokensOf(const std::string& list) {
    Situation situation = fiveVariables();
    situation.command = "PROPORTIONS /ONESAMPLE " + list + ".";
    source_.reset();
    procedure_.reset();
    host_.reset();
    host_ = open(situation);
    procedure_ = std::make_unique<BpProcedure>("Procedure", 10);
    source_ = std::make_unique<ProcedureDataSource>();
    ZELK_TokenSequence tokens(true);
    CommandDescriptor syntax("PROPORTIONS", "Proportions");
    SubComDescriptor design("ONESAMPLE", UPSpecTypes::kSubCommand, false, false);
    design.setExportParamDesc(UPSpecTypes::kTokens, true);
    syntax.addSubComDesc(design);
    CommandSpec spec;
    UniversalParser parser(tokens, spec, syntax);
    EXPECT_EQ(parser.getCommandSpecifications(), 0);
    ParamObj* param = spec.getSubComObj("ONESAMPLE")->exportParamObj();
    return param == nullptr ? std::vector<TokenInfoObj>() : param->getTokenList();
  }
  std::vector<VarIndex> resolved(const std::string& list, bool accepted = true) {
    const std::vector<TokenInfoObj> tokens = tokensOf(list);
    VarSpecObj lists("", "ONESAMPLE", *source_);
    EXPECT_EQ(lists.ValidateVariables(tokens, kKeepRepeats), accepted) << list;
    return accepted ? lists.GetValidVarList() : std::vector<VarIndex>();
  }

  std::unique_ptr<conformance::OpenHost> host_;
  std::unique_ptr<BpProcedure> procedure_;
  std::unique_ptr<ProcedureDataSource> source_;
};

TEST_F(VariableLists, NamesRangesAndAll) {
  EXPECT_EQ(resolved("B a"), (std::vector<VarIndex>{1, 0}));
  EXPECT_EQ(resolved("a b a"), (std::vector<VarIndex>{0, 1, 0})) << "repeats are kept";
  EXPECT_EQ(resolved("a TO r"), (std::vector<VarIndex>{0, 1, 2, 3}));
  EXPECT_EQ(resolved("ALL"), (std::vector<VarIndex>{0, 1, 4}))
      << "without the weight and the split variables";
  EXPECT_EQ(resolved("\"s\""), (std::vector<VarIndex>{4}));
}

TEST_F(VariableLists, WhatCannotBeResolvedIsRefused) {
  resolved("a nobody", false);
  resolved("a WITH b", false);
  resolved("1", false);
}

TEST_F(VariableLists, OneVariable) {
  const std::vector<TokenInfoObj> tokens = tokensOf("b nobody ALL");
  VarSpecObj lists("BY", "INDEPENDENTSAMPLES", *source_);
  EXPECT_EQ(lists.ValidateVariable(tokens.at(0)), 1);
  EXPECT_EQ(lists.GetValidVarList(), std::vector<VarIndex>{1});
  EXPECT_LT(lists.ValidateVariable(tokens.at(1)), 0);
  EXPECT_LT(lists.ValidateVariable(tokens.at(2)), 0);
}

TEST_F(VariableLists, WeightAndSplitVariables) {
  tokensOf("a");
  CommandDescriptor syntax("PROPORTIONS", "Proportions");
  VarSpecObj split("SPLIT FILE", syntax, *source_);
  EXPECT_TRUE(split.SetVariables({3}, kPlainList));
  EXPECT_EQ(split.GetValidVarList(), std::vector<VarIndex>{3});
  VarSpecObj weight("WEIGHT", syntax, *source_, true);
  EXPECT_TRUE(weight.SetVariable(2));
  EXPECT_FALSE(weight.SetVariable(4)) << "a string";
}

TEST_F(VariableLists, CommonVariables) {
  const std::vector<TokenInfoObj> tokens = tokensOf("a w");
  CommandDescriptor syntax("PROPORTIONS", "Proportions");
  VarSpecObj weight("WEIGHT", syntax, *source_, true);
  VarSpecObj lists("", "ONESAMPLE", *source_);
  ASSERT_TRUE(lists.ValidateVariables(tokens, kKeepRepeats));
  EXPECT_TRUE(lists.CheckCommonVars(weight)) << "no weight";
  ASSERT_TRUE(weight.SetVariable(2));
  EXPECT_FALSE(lists.CheckCommonVars(weight));
  ASSERT_TRUE(lists.ValidateVariables({tokens.at(0)}, kKeepRepeats));
  EXPECT_TRUE(lists.CheckCommonVars(weight));
}

TEST_F(VariableLists, WhatStandsInParentheses) {
  tokensOf("a");
  VarSpecObj lists("WITH", "PAIREDSAMPLES", *source_);
  lists.SetAllowQualifiers(true);
  ASSERT_TRUE(
      lists.ValidateVariables({word("a"), symbol("("), word("PAIRED"), symbol(")")}, kKeepRepeats));
  EXPECT_EQ(lists.GetValidVarList(), std::vector<VarIndex>{0});
  EXPECT_TRUE(lists.HasQualifier());
  ASSERT_EQ(lists.GetQualTokenList().size(), 1u);
  EXPECT_EQ(lists.GetQualTokenList()[0].getUpText(), "PAIRED");
  ASSERT_TRUE(lists.ValidateVariables({word("a"), symbol("("), symbol(")")}, kKeepRepeats));
  EXPECT_TRUE(lists.HasQualifier());
  EXPECT_TRUE(lists.GetQualTokenList().empty());
  ASSERT_TRUE(lists.ValidateVariables({word("a")}, kKeepRepeats));
  EXPECT_FALSE(lists.HasQualifier());
}

TEST_F(VariableLists, ValuesOfANumericVariable) {
  tokensOf("a");
  VarSpecObj lists("", "ONESAMPLE", *source_);
  ASSERT_TRUE(lists.SetVariable(0));
  double buffer = 0;
  ZELK_Format format;
  ASSERT_TRUE(lists.ValidateCatValue("2.5", &buffer, format));
  EXPECT_EQ(buffer, 2.5);
  EXPECT_TRUE(format.type == 0 || format.type > 2);
  lists.SetErrorReporting(false);
  EXPECT_FALSE(lists.ValidateCatValue("two", &buffer, format));
  EXPECT_FALSE(lists.ValidateCatValue("", &buffer, format));
}

TEST_F(VariableLists, ValuesOfAStringVariable) {
  tokensOf("a");
  VarSpecObj lists("", "ONESAMPLE", *source_);
  ASSERT_TRUE(lists.SetVariable(4));
  const int32_t width = source_->GetVariable(4).GetType();
  ASSERT_EQ(width, 10);
  std::vector<char> buffer(16, '?');
  ZELK_Format format;
  ASSERT_TRUE(lists.ValidateCatValue("x1", buffer.data(), format));
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), "x1              ");
  EXPECT_EQ(format.type, kStringFormatType);
  ASSERT_TRUE(lists.ValidateCatValue("0123456789", buffer.data(), format));
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), "0123456789      ");
  lists.SetErrorReporting(false);
  EXPECT_FALSE(lists.ValidateCatValue("0123456789A", buffer.data(), format));
}

}  // namespace
