#include "workbench/dataset/spelled_column.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using Name = ColumnType::Name;

SpelledColumn columnOf(const ColumnType& type = {}) {
  return SpelledColumn("data.json, line", "x", FieldRules(), type);
}

/// The column that texts of one spelling make, at the lines 1, 2, ...
CaseColumn made(SpelledColumn& column, Spelling spelling, const std::vector<std::string>& texts) {
  CaseColumn result;
  std::vector<uint32_t> codes;
  uint64_t line = 0;
  for (const std::string& text : texts) codes.push_back(column.code(spelling, text, ++line));
  result.codes.append(codes.data(), codes.size());
  column.refuseContradictions();
  column.finish(result);
  return result;
}

std::string refusal(const ColumnType& type, const std::vector<std::string>& texts) {
  SpelledColumn column = columnOf(type);
  try {
    made(column, Spelling::kField, texts);
  } catch (const DataError& error) {
    return error.what();
  }
  return "";
}

TEST(SpelledColumn, IsOfTheKindThatAllValuesHave) {
  SpelledColumn numbers = columnOf();
  const CaseColumn column = made(numbers, Spelling::kField, {"1", "", "1.0", "2e1", "NA"});
  EXPECT_EQ(column.kind, ValueKind::kNumber);
  EXPECT_EQ(column.number(0), 1.0);
  EXPECT_EQ(column.number(1), kSystemMissing);
  EXPECT_EQ(column.number(2), 1.0);
  EXPECT_EQ(column.codes[0], column.codes[2]);  // two spellings of one value
  EXPECT_EQ(column.number(3), 20.0);
  EXPECT_EQ(column.number(4), kSystemMissing);
}

TEST(SpelledColumn, IsTextWhenTheKindsDiffer) {
  SpelledColumn texts = columnOf();
  const CaseColumn column = made(texts, Spelling::kField, {"1", "2024-01-07", "  1", "1 ", "NA"});
  EXPECT_EQ(column.kind, ValueKind::kString);
  EXPECT_EQ(column.text(0), "1");
  EXPECT_EQ(column.text(1), "2024-01-07");
  EXPECT_EQ(column.text(2), "  1");
  EXPECT_EQ(column.text(3), "1");
  EXPECT_EQ(column.text(4), "NA");
}

TEST(SpelledColumn, StringsOfASourceWithNumbersAreNoNumbers) {
  SpelledColumn strings = columnOf();
  EXPECT_EQ(made(strings, Spelling::kString, {"1", "2"}).kind, ValueKind::kString);
  SpelledColumn mixed = columnOf();
  mixed.code(Spelling::kNumber, "1", 1);
  mixed.code(Spelling::kString, "1", 2);
  EXPECT_EQ(mixed.valueKind(), ValueKind::kString);
}

TEST(SpelledColumn, OneTextInTwoSpellingsHasTwoCodes) {
  SpelledColumn column = columnOf();
  EXPECT_EQ(column.code(Spelling::kBoolean, "true", 1), 0U);
  EXPECT_EQ(column.code(Spelling::kString, "true", 2), 1U);
  EXPECT_EQ(column.code(Spelling::kBoolean, "true", 3), 0U);
}

TEST(SpelledColumn, NotedValuesDecideTheKindToo) {
  SpelledColumn column = columnOf();
  column.code(Spelling::kField, "1", 1);
  EXPECT_EQ(column.valueKind(), ValueKind::kNumber);
  column.forget();
  column.note(Spelling::kField, "one");
  EXPECT_EQ(column.valueKind(), ValueKind::kString);
}

TEST(SpelledColumn, RefusesTheFirstValueThatContradictsTheDictionary) {
  ColumnType type;
  type.name = Name::kInteger;
  const std::string text = refusal(type, {"1", "2", "x", "y", "x"});
  EXPECT_NE(text.find("data.json, line 3: x: 'x'"), std::string::npos) << text;
  EXPECT_EQ(refusal(type, {"1", "2.0", ""}), "");
}

TEST(SpelledColumn, RefusesNumbersThatAreTooLarge) {
  const std::string text = refusal({}, {"1", "1e999"});
  EXPECT_NE(text.find("line 2: x: '1e999'"), std::string::npos) << text;
}

TEST(SpelledColumn, GivesCategoriesTheirNumbersAndRefusesOthers) {
  ColumnType type;
  type.name = Name::kString;
  type.codes = {{"low", 1.0}, {"high", 2.0}};
  SpelledColumn column = columnOf(type);
  const CaseColumn categories = made(column, Spelling::kField, {"high", "low ", "", "high"});
  EXPECT_EQ(categories.kind, ValueKind::kNumber);
  EXPECT_EQ(categories.number(0), 2.0);
  EXPECT_EQ(categories.number(1), 1.0);
  EXPECT_EQ(categories.number(2), kSystemMissing);
  EXPECT_EQ(categories.number(3), 2.0);
  const std::string text = refusal(type, {"high", "middle"});
  EXPECT_NE(text.find("line 2: x: 'middle' is not among"), std::string::npos) << text;
}

TEST(SpelledColumn, RefusesTextsWiderThanAStringHolds) {
  EXPECT_EQ(refusal({}, {std::string(32'767, 'x')}), "");
  const std::string text = refusal({}, {"a", std::string(32'768, 'x')});
  EXPECT_NE(text.find("takes 32768 bytes"), std::string::npos) << text;
}

TEST(SpelledColumn, SingleValuesAreReadAsThoseOfTheColumn) {
  SpelledColumn column = columnOf();
  made(column, Spelling::kField, {"5", "0"});
  EXPECT_EQ(column.numberOf(Spelling::kField, "5", 1), 5.0);
  EXPECT_EQ(column.numberOf(Spelling::kField, "-0", 1), 0.0);
  EXPECT_EQ(column.numberOf(Spelling::kField, "NA", 1), kSystemMissing);
  EXPECT_THROW(column.numberOf(Spelling::kField, "1e999", 9), DataError);
}

}  // namespace
}  // namespace workbench
