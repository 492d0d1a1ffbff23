// Texts that a user gives as values of a variable.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "host/parser.h"
#include "tests/workbench/parser/test_session.h"
#include "workbench/parser/level_reading.h"

namespace parser_tests {
namespace {

constexpr double kUntouched = 12345.0;

/// What a text is as a value of a variable.
struct Converted {
  bool accepted = false;
  std::array<double, 4> words{kUntouched, kUntouched, kUntouched, kUntouched};
  ZELK_Format format;

  double number() const { return words[0]; }
  std::string bytes(size_t count) const {
    std::string text(count, '\0');
    std::memcpy(text.data(), words.data(), count);
    return text;
  }
};

Converted convert(workbench::ActiveDataset& dataset, const std::string& name,
                  const std::string& text) {
  TestSession session("LIST", dataset);
  ProcedureDataSource source;
  VarSpecObj list("", "ONESAMPLE", source);
  EXPECT_TRUE(list.SetVariable(source.FindVariable(name)));
  Converted result;
  result.accepted = list.ValidateCatValue(text, result.words.data(), result.format);
  EXPECT_TRUE(session.messages().empty());
  return result;
}

class CategoryValue : public testing::Test {
 protected:
  CategoryValue() { fillDataset(dataset_); }
  Converted convert(const std::string& name, const std::string& text) {
    return parser_tests::convert(dataset_, name, text);
  }
  workbench::MemoryDataset dataset_;
};

TEST_F(CategoryValue, Numbers) {
  for (const auto& [text, value] : {std::pair<const char*, double>{"1", 1},
                                    {"1.0", 1},
                                    {"1.", 1},
                                    {"+2.5E+3", 2500},
                                    {".5", 0.5},
                                    {"-3", -3},
                                    {"1e-5", 1e-5}}) {
    const Converted converted = convert("a", text);
    EXPECT_TRUE(converted.accepted) << text;
    EXPECT_EQ(converted.number(), value) << text;
    EXPECT_EQ(converted.words[1], kUntouched);
    EXPECT_NE(converted.format.type, kStringFormatType);
  }
}

TEST_F(CategoryValue, MinusZeroIsZero) {
  const Converted converted = convert("a", "-0");
  EXPECT_TRUE(converted.accepted);
  EXPECT_FALSE(std::signbit(converted.number()));
}

TEST_F(CategoryValue, WhatIsNoNumberIsRefused) {
  for (const char* text : {"", "x", "1x", "nan", "NaN", "inf", "Infinity", "-Infinity", "1e999",
                           "1,5", "-1.7976931348623157e308"}) {
    const Converted converted = convert("a", text);
    EXPECT_FALSE(converted.accepted) << text;
    EXPECT_EQ(converted.number(), kUntouched) << text;
  }
}

TEST_F(CategoryValue, DatesInTheirOwnFormOrAsNumbers) {
  EXPECT_EQ(convert("d", "1970-01-02").number(), 86400.0);
  EXPECT_EQ(convert("d", "86400").number(), 86400.0);
  EXPECT_FALSE(convert("d", "1970-13-02").accepted);
  EXPECT_GT(convert("d", "1").format.type, 2);
}

TEST_F(CategoryValue, BooleansByLabelOrAsNumbers) {
  EXPECT_EQ(convert("t", "YES").number(), 1.0);
  EXPECT_EQ(convert("t", "no").number(), 0.0);
  EXPECT_EQ(convert("t", "1").number(), 1.0);
  EXPECT_FALSE(convert("t", "true").accepted);  // the dictionary gives other labels
}

workbench::Variable labelled(const std::string& name,
                             std::vector<std::pair<double, std::string>> labels) {
  workbench::Variable variable;
  variable.name = name;
  variable.numberLabels = std::move(labels);
  return variable;
}

TEST_F(CategoryValue, ValueLabelsAsTheyAreWritten) {
  dataset_.addNumbers(labelled("l", {{3, "low "}, {7, "high"}, {9, "3"}}), {0, 1});
  EXPECT_EQ(convert("l", "low").number(), 3.0);
  EXPECT_EQ(convert("l", "high  ").number(), 7.0);
  EXPECT_EQ(convert("l", "3").number(), 9.0);  // a text: the label comes first
  EXPECT_EQ(convert("l", "7").number(), 7.0);
  EXPECT_FALSE(convert("l", "High").accepted);
}

TEST_F(CategoryValue, ALabelOfTwoValuesIsRefused) {
  dataset_.addNumbers(labelled("l", {{3, "yes"}, {7, "yes"}, {9, "no"}}), {0, 1});
  EXPECT_FALSE(convert("l", "yes").accepted);
  EXPECT_EQ(convert("l", "no").number(), 9.0);
}

TEST_F(CategoryValue, OrderedCategoriesByLabelOrText) {
  workbench::Variable ordered = labelled("o", {{1, "few"}, {2, "20"}});
  ordered.categoryTexts = {{1, "10"}, {2, "20"}};
  dataset_.addNumbers(ordered, {0, 1});
  EXPECT_EQ(convert("o", "few").number(), 1.0);
  EXPECT_EQ(convert("o", "10").number(), 1.0);
  EXPECT_EQ(convert("o", "20").number(), 2.0);
  EXPECT_FALSE(convert("o", "2").accepted);
}

/// A level as it stands in a command.
workbench::LevelReading read(const workbench::Variable& variable, const std::string& text,
                             workbench::LevelForm form) {
  return workbench::readLevel(variable, workbench::LabelIndex(variable), text, form);
}

TEST(LevelReading, ABareNumberIsRefusedWhereACategoryReadsAsAnother) {
  workbench::Variable ordered;
  ordered.name = "o";
  ordered.categoryTexts = {{1, "1"}, {2, "5"}};
  const workbench::LevelReading refused = read(ordered, "1", workbench::LevelForm::kBare);
  EXPECT_FALSE(refused.value);
  EXPECT_NE(refused.problem.find("Quote the category"), std::string::npos);
  EXPECT_EQ(read(ordered, "1", workbench::LevelForm::kQuoted).value, workbench::SplitValue(1.0));
}

TEST(LevelReading, ABareNumberIsTheCodeOfACategoryThatReadsAsNoOther) {
  workbench::Variable ordered;
  ordered.name = "o";
  ordered.categoryTexts = {{1, "low"}, {2, "2"}};
  EXPECT_EQ(read(ordered, "2", workbench::LevelForm::kBare).value, workbench::SplitValue(2.0));
  EXPECT_EQ(read(ordered, "low", workbench::LevelForm::kQuoted).value, workbench::SplitValue(1.0));
}

TEST(LevelReading, WrittenAsACommandHasTo) {
  workbench::Variable number;
  workbench::Variable date;
  date.kind = workbench::ValueKind::kDate;
  EXPECT_EQ(workbench::writtenLevel(number, 2.5), "2.5");
  EXPECT_EQ(workbench::writtenLevel(date, 86400.0), "'1970-01-02'");
  workbench::Variable text;
  text.kind = workbench::ValueKind::kString;
  EXPECT_EQ(workbench::writtenLevel(text, std::string("it's")), "'it''s'");
}

TEST_F(CategoryValue, StringsArePaddedToWholeWords) {
  const Converted converted = convert("s", "yes");
  EXPECT_TRUE(converted.accepted);
  EXPECT_EQ(converted.bytes(16), "yes             ");
  EXPECT_EQ(converted.words[2], kUntouched);
  EXPECT_EQ(converted.format.type, kStringFormatType);
}

TEST_F(CategoryValue, StringsMayBeAsLongAsTheVariableIsWide) {
  EXPECT_EQ(convert("s", "1234567890").bytes(16), "1234567890      ");
  EXPECT_EQ(convert("s", "1234567890   ").bytes(16), "1234567890      ");  // blanks never count
  EXPECT_FALSE(convert("s", "12345678901").accepted);
  EXPECT_FALSE(convert("s", "           x").accepted);  // leading ones do
  EXPECT_TRUE(convert("s", "").accepted);
  EXPECT_EQ(convert("s", "1.0").bytes(8), "1.0     ");  // the text, not the number
}

TEST_F(CategoryValue, AShortStringIsOneWord) {
  dataset_.addStrings("short", {"no", "yes"});
  const Converted converted = convert("short", "no");
  EXPECT_EQ(converted.bytes(8), "no      ");
  EXPECT_EQ(converted.words[1], kUntouched);
}

TEST_F(CategoryValue, WithoutAVariableNothingIsAValue) {
  TestSession session("LIST");
  ProcedureDataSource source;
  VarSpecObj list("", "ONESAMPLE", source);
  double word = kUntouched;
  ZELK_Format format;
  EXPECT_FALSE(list.ValidateCatValue("1", &word, format));
}

/// A data set whose declarations hold no more than they promise.
class BareDeclarations final : public workbench::ActiveDataset {
 public:
  BareDeclarations() {
    fillDataset(full_);
    for (VarIndex index = 0; index < full_.variableCount(); ++index) {
      workbench::Variable bare;
      bare.name = full_.declaration(index).name;
      bare.label = full_.declaration(index).label;
      bare.kind = full_.declaration(index).kind;
      bare_.push_back(bare);
    }
  }
  int32_t variableCount() const override { return full_.variableCount(); }
  const workbench::Variable& variable(VarIndex index) override { return full_.variable(index); }
  const workbench::Variable& declaration(VarIndex index) const override {
    return bare_.at(static_cast<size_t>(index));
  }
  VarIndex find(std::string_view name) const override { return full_.find(name); }
  const std::vector<VarIndex>& splitVariables() const override { return full_.splitVariables(); }
  VarIndex weightVariable() const override { return full_.weightVariable(); }
  bool separateSplitLayout() const override { return full_.separateSplitLayout(); }
  std::unique_ptr<CaseFeed> openFeed() override { return full_.openFeed(); }
  const std::vector<workbench::SplitValue>& currentSplit() const override {
    return full_.currentSplit();
  }
  bool failed() const override { return full_.failed(); }
  const std::string& failure() const override { return full_.failure(); }
  int64_t caseCount() const override { return full_.caseCount(); }

 private:
  workbench::MemoryDataset full_;
  std::vector<workbench::Variable> bare_;
};

TEST(CategoryValueOfAFile, LabelsComeFromTheWholeDictionaryEntry) {
  BareDeclarations dataset;
  EXPECT_EQ(convert(dataset, "t", "yes").number(), 1.0);
}

}  // namespace
}  // namespace parser_tests
