// Tables: found or made, identified by structure, written at the crossing of current categories.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "host/output.h"
#include "tests/conformance/host_under_test.h"

namespace {

using conformance::numbers;
using conformance::open;

BpString text(const char* label) { return BpString(label, 1); }

BpComposite equation(VarIndex variable, double value, int preference,
                     const char* templateText = "^1 = ^2") {
  BpComposite label(templateText);
  label.Add(BpVariable(variable, 2));
  label.Add(BpDataValue(variable, value, preference));
  label.Finish();
  return label;
}

class Output : public testing::Test {
 protected:
  Output() {
    rows_->Position(0, 1, 0, 0);
    columns_->Position(1, 1, 1, 0);
  }
  BpNumber count(double value) const { return BpNumber(value, procedure_.Count()); }

  std::unique_ptr<conformance::OpenHost> host_ = open({{numbers("x", {1}), numbers("y", {1})}});
  BpProcedure procedure_{"Procedure", 10};
  BpPivotTable* table_ = &procedure_.Heading().PivotTable(text("T"), "T", 1);
  BpDimension* rows_ = &table_->Dimension(text("Rows"), 2);
  BpDimension* columns_ = &table_->Dimension(text("Columns"), 2);
};

TEST_F(Output, AskingTwiceGivesTheSameObject) {
  EXPECT_EQ(&procedure_.Heading().PivotTable(text("T"), "T", 1), table_);
  EXPECT_NE(&procedure_.Heading().PivotTable(text("U"), "U", 1), table_);
  EXPECT_EQ(&table_->Dimension(text("Rows"), 2), rows_);
  EXPECT_NE(rows_, columns_);
  BpGroup& group = rows_->Group(text("G"), 1, 2);
  EXPECT_EQ(&rows_->Group(text("G"), 1, 2), &group);
  BpCategory& category = group.Category(text("A"));
  EXPECT_EQ(&group.Category(text("A")), &category);
  EXPECT_NE(&rows_->Category(text("A")), &category);
  BpPivotTable& other = procedure_.Heading().PivotTable(text("U"), "U", 1);
  EXPECT_NE(&other.Dimension(text("Rows"), 2), rows_);
}

TEST_F(Output, ManyObjectsKeepTheirAddress) {
  std::vector<BpCategory*> categories;
  for (int i = 0; i < 2000; ++i) {
    categories.push_back(&rows_->Category(text(std::to_string(i).c_str())));
  }
  for (int i = 0; i < 2000; ++i) {
    EXPECT_EQ(&rows_->Category(text(std::to_string(i).c_str())),
              categories[static_cast<size_t>(i)]);
  }
}

TEST_F(Output, LabelsAreTheSameWhenTheirStructureIs) {
  BpCategory& category = rows_->Category(equation(0, 1, 2));
  EXPECT_EQ(&rows_->Category(equation(0, 1, 2)), &category);
  EXPECT_NE(&rows_->Category(equation(1, 1, 2)), &category) << "another variable";
  EXPECT_NE(&rows_->Category(equation(0, 2, 2)), &category) << "another value";
  EXPECT_NE(&rows_->Category(equation(0, 1, 0)), &category) << "another preference";
  EXPECT_NE(&rows_->Category(equation(0, 1, 2, "^1 >= ^2")), &category) << "another template";
  EXPECT_NE(&rows_->Category(equation(0, std::nextafter(1.0, 2.0), 2)), &category)
      << "a value that reads the same in few digits";
  EXPECT_NE(&rows_->Category(text("x = 1")), &category) << "the text that it reads as";
}

TEST_F(Output, SublistsArePartOfTheStructure) {
  const auto levels = [](const std::vector<double>& values) {
    BpComposite label("^1 = [%1:, ^1:]2");
    label.Add(BpVariable(0, 2));
    label.Sublist();
    for (const double value : values) label.Add(BpDataValue(0, value, 2));
    label.EndSublist();
    label.Finish();
    return label;
  };
  BpCategory& category = rows_->Category(levels({1, 2}));
  EXPECT_EQ(&rows_->Category(levels({1, 2})), &category);
  EXPECT_NE(&rows_->Category(levels({2, 1})), &category);
  EXPECT_NE(&rows_->Category(levels({1})), &category);
  EXPECT_NE(&rows_->Category(levels({})), &category);
}

TEST_F(Output, NumbersAndStringsAreDifferentValues) {
  const auto labelled = [](const BpDataValue& value) {
    BpComposite label("^1");
    label.Add(value);
    label.Finish();
    return label;
  };
  BpCategory& category = rows_->Category(labelled(BpDataValue(0, 1.0, 2)));
  EXPECT_NE(&rows_->Category(labelled(BpDataValue(0, std::string("1"), 2))), &category);
  EXPECT_NE(&rows_->Category(labelled(BpDataValue(0, kSystemMissing, 2))), &category);
}

TEST_F(Output, AVariableAndATextAreDifferentDimensions) {
  BpDimension& named = table_->Dimension(text("x"), 2);
  EXPECT_NE(&table_->Dimension(BpVariable(0, 2), 2), &named);
  EXPECT_EQ(&table_->Dimension(BpVariable(0, 2), 2), &table_->Dimension(BpVariable(0, 2), 2));
  EXPECT_NE(&table_->Dimension(BpVariable(0, 2), 2), &table_->Dimension(BpVariable(1, 2), 2));
}

TEST_F(Output, ACellStandsAtTheCurrentCategoriesOfTheOtherDimensions) {
  rows_->Category(text("A"));
  columns_->Category(text("one")).Cell(count(1));
  columns_->Category(text("two")).Cell(count(2));
  rows_->Category(text("B"));
  columns_->Category(text("one")).Cell(count(3));
  rows_->Category(text("A"));  // found again: current again
  columns_->Category(text("three")).Cell(count(4));
  EXPECT_EQ(host_->cells(), (std::vector<std::string>{"T: A, one = 1", "T: A, two = 2",
                                                      "T: B, one = 3", "T: A, three = 4"}));
}

TEST_F(Output, AGroupDoesNotBecomeCurrent) {
  rows_->Category(text("A"));
  BpGroup& group = rows_->Group(text("G"), 1, 2);
  columns_->Category(text("one")).Cell(count(1));
  group.Category(text("B"));
  columns_->Category(text("one")).Cell(count(2));
  EXPECT_EQ(host_->cells(), (std::vector<std::string>{"T: A, one = 1", "T: G / B, one = 2"}));
}

TEST_F(Output, ASecondWriteReplacesTheFirst) {
  rows_->Category(text("A"));
  BpCategory& one = columns_->Category(text("one"));
  one.Cell(count(1));
  one.Cell(BpNumber(2, procedure_.GeneralStat()));
  EXPECT_EQ(host_->cells(), std::vector<std::string>{"T: A, one = 2"});
}

TEST_F(Output, EveryNumberIsTaken) {
  rows_->Category(text("A"));
  columns_->Category(text("one")).Cell(count(std::numeric_limits<double>::quiet_NaN()));
  columns_->Category(text("two")).Cell(count(std::numeric_limits<double>::infinity()));
  columns_->Category(text("three")).Cell(count(kSystemMissing));
  EXPECT_EQ(host_->cells(), (std::vector<std::string>{"T: A, one = NaN", "T: A, two = inf",
                                                      "T: A, three = missing"}));
}

TEST_F(Output, NotesOnCells) {
  rows_->Category(text("A"));
  BpCategory& one = columns_->Category(text("one"));
  one.Cell(count(kSystemMissing));
  BpCellNote note;
  note.text = BpCellText::Replicate(text("why"));
  one.CellNote(note);
  columns_->Category(text("two")).Cell(count(2));
  EXPECT_EQ(host_->cells(),
            (std::vector<std::string>{"T: A, one = missing {why}", "T: A, two = 2"}));
}

TEST_F(Output, AFootnoteIsKeptOnce) {
  BpCategory& one = columns_->Category(text("one"));
  for (int again = 0; again < 2; ++again) {
    BpComposite note("Test Value = ^1");
    note.Add(BpNumber(0.5, procedure_.SigDigit(0.5)));
    note.Finish();
    one.Note(note);
  }
  one.Note(text("other"));
  const std::vector<std::string> footnotes = host_->footnotes();
  ASSERT_EQ(footnotes.size(), 1u);
  size_t braces = 0;
  for (const char letter : footnotes[0]) braces += letter == '{' ? 1 : 0;
  EXPECT_EQ(braces, 2u) << footnotes[0];
}

TEST_F(Output, FormatsAreTheHostsOwn) {
  EXPECT_EQ(procedure_.Count().kind, BpFormatSpec::Kind::kCount);
  EXPECT_EQ(procedure_.GeneralStat().kind, BpFormatSpec::Kind::kGeneralStat);
  EXPECT_EQ(procedure_.SigDigit(95).kind, BpFormatSpec::Kind::kSigDigit);
}

}  // namespace
