// Variables, cases, weights and missing values.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "host/data_source.h"
#include "tests/conformance/host_under_test.h"

namespace {

using conformance::Column;
using conformance::numbers;
using conformance::open;
using conformance::Situation;
using conformance::strings;

std::vector<double> firstColumn(ProcedureDataSource& source) {
  const std::unique_ptr<ZELK_InputCaseIterator> iterator(source.MakeIterator(nullptr));
  std::vector<double> values;
  while (const Case* at = iterator->NextCase()) values.push_back(*at->Obs(0));
  for (int again = 0; again < 3; ++again) EXPECT_EQ(iterator->NextCase(), nullptr);
  return values;
}

TEST(Data, CasesComeInOrderAndThenNullForEver) {
  for (const int64_t chunk : {1, 2, 3, 1000}) {
    Situation situation{{numbers("x", {3, 1, 2, 5})}};
    situation.chunkSize = chunk;
    const auto host = open(situation);
    ProcedureDataSource source;
    EXPECT_EQ(firstColumn(source), (std::vector<double>{3, 1, 2, 5}));
    // A second pass sees the same.
    EXPECT_EQ(firstColumn(source), (std::vector<double>{3, 1, 2, 5}));
  }
}

TEST(Data, NoMarkWithoutSplitVariables) {
  const auto host = open({{numbers("x", {1, 2})}});
  ProcedureDataSource source;
  const std::unique_ptr<ProcDSIterator> iterator(
      static_cast<ProcDSIterator*>(source.MakeIterator(nullptr)));
  EXPECT_FALSE(iterator->SplitGroupEnd());
  while (iterator->NextCase() != nullptr) EXPECT_FALSE(iterator->SplitGroupEnd());
}

TEST(Data, EmptyDataHasNoCaseAndNoMark) {
  for (const bool split : {false, true}) {
    Situation situation{{numbers("x", {}), numbers("r", {})}};
    if (split) situation.split = {1};
    const auto host = open(situation);
    ProcedureDataSource source;
    EXPECT_EQ(firstColumn(source), std::vector<double>());
    EXPECT_FALSE(source.FatalError());
  }
}

TEST(Data, WeightsAreOneOrAsTheyStand) {
  const std::vector<double> weights{0.49, 2.5, 0, -3, kSystemMissing};
  Situation situation{{numbers("x", {1, 1, 1, 1, 1}), numbers("w", weights)}};
  for (const bool weighted : {false, true}) {
    situation.weight = weighted ? 1 : -1;
    const auto host = open(situation);
    ProcedureDataSource source;
    EXPECT_EQ(source.GetWeightVarIndex() >= 0, weighted);
    const std::unique_ptr<ProcDSIterator> iterator(
        static_cast<ProcDSIterator*>(source.MakeIterator(nullptr)));
    for (const double weight : weights) {
      ASSERT_NE(iterator->NextCase(), nullptr);
      EXPECT_EQ(iterator->Weight(), weighted ? weight : 1.0);
    }
  }
}

TEST(Data, ObservationsOfStringsArePaddedToWholeWords) {
  const auto host = open({{strings("s", 10, {"abc", "0123456789"})}});
  ProcedureDataSource source;
  EXPECT_EQ(source.GetVariable(0).GetType(), 10);
  const std::unique_ptr<ZELK_InputCaseIterator> iterator(source.MakeIterator(nullptr));
  for (const char* expected : {"abc             ", "0123456789      "}) {
    const Case* at = iterator->NextCase();
    ASSERT_NE(at, nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(at->Obs(0)), 16), expected);
  }
}

TEST(Data, MissingNumbers) {
  Column column = numbers("x", {1, kSystemMissing, 9, 8, 50, 51.5, 52, 49.9});
  column.missingNumbers = {9, 8};
  column.missingLow = 50;
  column.missingHigh = 52;
  const auto host = open({{column}});
  ProcedureDataSource source;
  const ZELK_Variable& variable = source.GetVariable(0);
  const std::unique_ptr<ZELK_InputCaseIterator> iterator(source.MakeIterator(nullptr));
  std::vector<bool> missing;
  while (const Case* at = iterator->NextCase()) missing.push_back(variable.IsMissing(at->Obs(0)));
  EXPECT_EQ(missing, (std::vector<bool>{false, true, true, true, true, true, true, false}));
}

TEST(Data, MissingStringsAreBlankOrDeclared) {
  Column column = strings("s", 9, {"a", "", "   ", "NA", "NA ", "na", " NA"});
  column.missingStrings = {"NA"};
  const auto host = open({{column}});
  ProcedureDataSource source;
  const ZELK_Variable& variable = source.GetVariable(0);
  const std::unique_ptr<ZELK_InputCaseIterator> iterator(source.MakeIterator(nullptr));
  std::vector<bool> missing;
  while (const Case* at = iterator->NextCase()) missing.push_back(variable.IsMissing(at->Obs(0)));
  EXPECT_EQ(missing, (std::vector<bool>{false, true, true, true, true, false, false}));
}

TEST(Data, AStringVariableIsOneEvenWhenAllItsValuesAreEmpty) {
  const auto host = open({{strings("s", 1, {"", ""}), numbers("x", {1, 2})}});
  ProcedureDataSource source;
  EXPECT_GE(source.GetVariable(0).GetType(), 1);
  EXPECT_EQ(source.GetVariable(0).GetFormat().type, kStringFormatType);
  EXPECT_EQ(source.GetVariable(0).GetFormatEx().type, kStringFormatType);
  EXPECT_EQ(source.GetVariable(1).GetType(), 0);
  const int type = source.GetVariable(1).GetFormat().type;
  EXPECT_TRUE(type == 0 || type > 2);
}

TEST(Data, VariablesAreFoundWhateverTheCaseOfLetters) {
  const auto host = open({{numbers("x", {1}), numbers("$bootstrap_split", {1})}});
  ProcedureDataSource source;
  EXPECT_EQ(source.GetVariableCount(), 2);
  EXPECT_EQ(source.FindVariable("X"), 0);
  EXPECT_EQ(source.FindVariable("$Bootstrap_Split"), 1);
  EXPECT_LT(source.FindVariable("xx"), 0);
  EXPECT_LT(source.FindVariable(""), 0);
  EXPECT_TRUE(source.GetVariable(1).GetName() == "$bootstrap_split");
  EXPECT_FALSE(source.GetVariable(1).GetName() == "$bootstrap");
  EXPECT_TRUE(source.GetVariable(1).GetUpName() == "$BOOTSTRAP_SPLIT");
}

TEST(Data, LabelsOfVariablesAndValues) {
  Column column = numbers("x", {1});
  column.label = "Answer";
  column.numberLabels = {{1, "yes"}, {0, "no"}};
  Column text = strings("s", 4, {"a"});
  text.stringLabels = {{"a", "first"}};
  const auto host = open({{column, text}});
  ProcedureDataSource source;
  EXPECT_EQ(source.GetVariable(0).GetLabel(), "Answer");
  EXPECT_EQ(source.GetVariable(1).GetLabel(), "");
  const std::string* label = source.GetVariable(0).GetValueLabels().Find(1.0);
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(*label, "yes");
  EXPECT_EQ(source.GetVariable(0).GetValueLabels().Find(2.0), nullptr);
  label = source.GetVariable(1).GetValueLabels().Find(std::string_view("a"));
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(*label, "first");
  EXPECT_EQ(source.GetVariable(1).GetValueLabels().Find(std::string_view("b")), nullptr);
}

}  // namespace
