// Split groups: their end marks, and what the output remembers of them.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/data_source.h"
#include "host/output.h"
#include "tests/conformance/host_under_test.h"

namespace {

using conformance::numbers;
using conformance::open;
using conformance::Situation;
using conformance::strings;

Situation threeGroups() {
  Situation situation{
      {strings("r", 1, {"a", "a", "a", "b", "c", "c"}), numbers("x", {1, 2, 3, 4, 5, 6})}};
  situation.split = {0};
  return situation;
}

/// "1 2 | 3 |": the cases and the marks, without a mark after the last group.
std::string sequence(ProcedureDataSource& source) {
  const std::unique_ptr<ProcDSIterator> iterator(
      static_cast<ProcDSIterator*>(source.MakeIterator(nullptr)));
  std::string text;
  while (const Case* at = iterator->NextCase()) {
    text += iterator->SplitGroupEnd() ? "| " : std::to_string(static_cast<int>(*at->Obs(1))) + " ";
  }
  EXPECT_FALSE(iterator->SplitGroupEnd());
  for (int again = 0; again < 3; ++again) EXPECT_EQ(iterator->NextCase(), nullptr);
  if (text.size() > 2 && text.substr(text.size() - 2) == "| ") text.resize(text.size() - 2);
  return text;
}

TEST(Split, AMarkFollowsEachGroup) {
  for (const int64_t chunk : {1, 2, 1000}) {
    Situation situation = threeGroups();
    situation.chunkSize = chunk;
    const auto host = open(situation);
    ProcedureDataSource source;
    EXPECT_EQ(source.GetNSplitVars(), 1);
    EXPECT_EQ(source.GetSplitVarIndex(0), 0);
    EXPECT_EQ(sequence(source), "1 2 3 | 4 | 5 6 ");
    EXPECT_EQ(sequence(source), "1 2 3 | 4 | 5 6 ");
  }
}

TEST(Split, LayoutIsAsSet) {
  for (const bool separate : {false, true}) {
    Situation situation = threeGroups();
    situation.separateLayout = separate;
    const auto host = open(situation);
    ProcedureDataSource source;
    EXPECT_EQ(source.SplitLayoutSeparate(), separate);
  }
}

void writeCell(BpProcedure& procedure, double value) {
  BpPivotTable& table = procedure.Heading().PivotTable(BpString("T", 1), "T", 1);
  BpDimension& rows = table.Dimension(BpString("Rows", 1), 2);
  rows.Position(0, 1, 0, 0);
  rows.Category(BpString("A", 1)).Cell(BpNumber(value, procedure.Count()));
}

/// Reads on to the end of the group of the case at hand.
void toEndOfGroup(ProcDSIterator& iterator) {
  while (iterator.NextCase() != nullptr && !iterator.SplitGroupEnd()) {
  }
}

TEST(Split, TheGroupThatWasLookedUpStaysUntilTheNextChange) {
  for (const bool separate : {false, true}) {
    Situation situation = threeGroups();
    situation.separateLayout = separate;
    const auto host = open(situation);
    BpProcedure procedure("Procedure", 10);
    ProcedureDataSource source;
    const std::unique_ptr<ProcDSIterator> iterator(
        static_cast<ProcDSIterator*>(source.MakeIterator(nullptr)));
    ASSERT_NE(iterator->NextCase(), nullptr);
    procedure.SplitChange();
    toEndOfGroup(*iterator);
    writeCell(procedure, 1);  // group a, although the mark is at hand
    ASSERT_NE(iterator->NextCase(), nullptr);
    toEndOfGroup(*iterator);  // group b is passed over without a change
    ASSERT_NE(iterator->NextCase(), nullptr);
    procedure.SplitChange();
    procedure.SplitChange();  // looks up and never counts
    toEndOfGroup(*iterator);
    writeCell(procedure, 3);
    writeCell(procedure, 4);
    const std::vector<std::string> cells = host->cells();
    EXPECT_EQ(cells, (std::vector<std::string>{"T: split a, A = 1", "T: split c, A = 4"}))
        << separate;
  }
}

TEST(Split, AFreshIteratorStartsWithTheFirstGroupAgain) {
  const auto host = open(threeGroups());
  BpProcedure procedure("Procedure", 10);
  ProcedureDataSource source;
  for (int pass = 0; pass < 2; ++pass) {
    const std::unique_ptr<ProcDSIterator> iterator(
        static_cast<ProcDSIterator*>(source.MakeIterator(nullptr)));
    ASSERT_NE(iterator->NextCase(), nullptr);
    procedure.SplitChange();
    writeCell(procedure, pass);
    toEndOfGroup(*iterator);
    ASSERT_NE(iterator->NextCase(), nullptr);
    procedure.SplitChange();
    writeCell(procedure, 10 + pass);
  }
  EXPECT_EQ(host->cells(), (std::vector<std::string>{"T: split a, A = 1", "T: split b, A = 11"}));
}

}  // namespace
