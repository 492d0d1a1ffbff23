#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <utility>

#include "output_fixture.h"

namespace workbench {
namespace {

class Tables : public OutputTest {};

TEST_F(Tables, EverythingIsFoundOrMade) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpPivotTable& table = pivot(procedure, "T");
  EXPECT_EQ(&pivot(procedure, "T"), &table);
  EXPECT_NE(&pivot(procedure, "U"), &table);
  BpDimension& dimension = table.Dimension(text("D"), 2);
  EXPECT_EQ(&table.Dimension(text("D"), 2), &dimension);
  EXPECT_NE(&table.Dimension(text("E"), 2), &dimension);
  BpGroup& group = dimension.Group(text("G"), 1, 2);
  EXPECT_EQ(&dimension.Group(text("G"), 1, 2), &group);
  EXPECT_NE(&group.Group(text("G"), 1, 2), &group) << "another parent";
  BpCategory& leaf = group.Category(text("L"));
  EXPECT_EQ(&group.Category(text("L")), &leaf);
  EXPECT_NE(&dimension.Category(text("L")), &leaf) << "another parent";
  dimension.Category(text("G")).Cell(count(1));
  EXPECT_EQ(&dimension.Group(text("G"), 1, 2), &group) << "a leaf of that label is another node";
  EXPECT_EQ(treeText(finish().tables[0]->dimensions()[0]), "G [G [], L], L, G (2)");
}

TEST_F(Tables, ReferencesStayGoodWhileTheTreeGrows) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpDimension& dimension = dimensionAt(pivot(procedure, "T"), text("D"), 0);
  BpCategory& first = dimension.Category(text("first"));
  for (int i = 0; i < 5000; ++i) dimension.Category(composite("^1", count(i)));
  first.Cell(count(42));
  const Table& table = *finish().tables[0];
  EXPECT_EQ(cellsText(table), "first/ 42.00\n");
  EXPECT_EQ(table.dimensions()[0].leafCount(), 5001);
}

TEST_F(Tables, CategoriesStandInTheOrderOfTheirAddition) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpDimension& columns = dimensionAt(pivot(procedure, "T"), text("Statistics"), 1);
  columns.Group(text("Observed"), 1, 2).Category(text("Successes")).Cell(count(1));
  columns.Category(text("Error"));
  columns.Group(text("Observed"), 1, 2).Category(text("Trials")).Cell(count(2));
  columns.Category(text("Z"));
  EXPECT_EQ(treeText(finish().tables[0]->dimensions()[0]),
            "Observed [Successes, Trials], Error, Z");
}

TEST_F(Tables, ACellStandsAtTheCurrentCategories) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpPivotTable& table = pivot(procedure, "T");
  BpDimension& rows = dimensionAt(table, text("R"), 0);
  BpDimension& columns = dimensionAt(table, text("C"), 1);
  BpCategory& a = rows.Category(text("a"));
  columns.Category(text("x")).Cell(count(1));
  rows.Category(text("b"));
  columns.Category(text("x")).Cell(count(2));
  columns.Group(text("G"), 1, 2);  // a group changes nothing
  columns.Category(text("y")).Cell(count(3));
  a.Cell(count(4));  // at its own row, whatever is current there
  columns.Category(text("z")).Cell(count(5));
  EXPECT_EQ(cellsText(*finish().tables[0]),
            "a/ x/ 1.000\nb/ x/ 2.000\nb/ y/ 3.000\na/ y/ 4.000\nb/ z/ 5.000\n");
}

/// Row by row, then at places of rows long ago, the first of which are replaced and the others new.
TEST_F(Tables, CellsAreFoundAmongManyInAnyOrder) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpPivotTable& table = pivot(procedure, "T");
  BpDimension& rows = dimensionAt(table, text("R"), 0);
  BpDimension& columns = dimensionAt(table, text("C"), 1);
  const auto put = [&](int row, int column, double value) {
    rows.Category(composite("^1", count(row)));
    columns.Category(composite("^1", count(column))).Cell(count(value));
  };
  for (int row = 0; row < 300; ++row) {
    for (int column = 0; column < 3; ++column) put(row, column, row);
  }
  for (int row = 299; row >= 0; row -= 2) {
    for (int column = 4; column > 0; --column) put(row, column, -column);
  }
  const Table& done = *finish().tables[0];
  std::map<std::pair<int32_t, int32_t>, double> found;
  for (size_t cell = 0; cell < done.cellCount(); ++cell) {
    found[{done.leafOf(cell, 0), done.leafOf(cell, 1)}] = done.cell(cell).value;
  }
  EXPECT_EQ(found.size(), done.cellCount()) << "no place has two cells";
  std::map<std::pair<int32_t, int32_t>, double> expected;
  for (int row = 0; row < 300; ++row) {
    for (int column = 0; column < 3; ++column) expected[{row, column}] = row;
    if (row % 2 == 0) continue;
    // The leaf of column 4 came before that of column 3.
    for (const auto& [leaf, column] : {std::pair(1, 1), {2, 2}, {3, 4}, {4, 3}}) {
      expected[{row, leaf}] = -column;
    }
  }
  EXPECT_EQ(found, expected);
}

/// More texts than are remembered, below several groups, in an order that changes.
TEST_F(Tables, TextsAreFoundBelowTheirOwnParent) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpDimension& columns = dimensionAt(pivot(procedure, "T"), text("C"), 1);
  std::map<std::string, BpCategory*> made;
  for (int step = 0; step < 600; ++step) {
    const std::string group = "G" + std::to_string(step % 5);
    const std::string leaf = "L" + std::to_string(step * 7 % 23);
    BpCategory& category = columns.Group(text(group.c_str()), 1, 2).Category(text(leaf.c_str()));
    const auto [known, isNew] = made.emplace(group + leaf, &category);
    EXPECT_EQ(known->second, &category) << group << leaf;
    category.Cell(count(step));
  }
  EXPECT_EQ(made.size(), 5U * 23U);
  EXPECT_EQ(finish().tables[0]->dimensions()[0].leafCount(), 5 * 23);
}

TEST_F(Tables, ASecondCellReplacesTheFirstWithItsNote) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpCategory& leaf = dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text("a"));
  BpCellNote note;
  note.text = BpCellText::Replicate(text("Note ..."));
  leaf.Cell(statistic(kSystemMissing));
  leaf.CellNote(note);
  leaf.CellNote(note);
  leaf.Cell(count(7));
  const Table& table = *finish().tables[0];
  EXPECT_EQ(cellsText(table), "a/ 7.000\n");
  EXPECT_EQ(table.cell(0).format, BpFormatSpec::Kind::kCount);
}

TEST_F(Tables, NotesStandOnTheCellsThatTheyWereGiven) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpDimension& rows = dimensionAt(pivot(procedure, "T"), text("R"), 0);
  BpCellNote note;
  note.text = BpCellText::Replicate(text("Note ..."));
  BpCategory& a = rows.Category(text("a"));
  a.CellNote(note);  // no cell yet: nothing that the note could be about
  a.Cell(count(1));
  BpCategory& b = rows.Category(text("b"));
  b.Cell(count(2));
  b.CellNote(note);
  b.CellNote(BpCellNote());
  EXPECT_EQ(cellsText(*finish().tables[0]), "a/ 1.000\nb/ 2.000 Note ...\n");
}

TEST_F(Tables, AFootnoteIsKeptOnce) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpCategory& leaf = dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text("a"));
  leaf.Cell(count(1));
  for (int i = 0; i < 3; ++i) leaf.Note(composite("Test Value = ^1", labelNumber(0.2)));
  leaf.Note(composite("Test Value = ^1", labelNumber(0.3)));
  const auto& footnotes = finish().tables[0]->dimensions()[0].footnotes(1);
  ASSERT_EQ(footnotes.size(), 2u);
  EXPECT_EQ(footnotes[0].text, "Test Value = 0.2");
  EXPECT_EQ(footnotes[0].key, "Test Value = ^1");
  EXPECT_EQ(footnotes[1].text, "Test Value = 0.3");
}

TEST_F(Tables, DimensionsStandOutermostFirst) {
  const VarIndex arm = data.addNumber("arm");
  const VarIndex region = data.addNumber("region");
  data.splitVariablesNow = {region};
  begin();
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {1.0});
  BpPivotTable& table = pivot(procedure, "T");
  dimensionAt(table, text("Statistics"), 1).Category(text("x"));
  dimensionAt(table, BpVariable(arm, 2), 0, 1).Category(text("x"));
  dimensionAt(table, text("Variables"), 0, 2).Category(text("x")).Cell(count(1));
  const Table& model = *finish().tables[0];
  std::string names;
  for (const int axis : {0, 1}) {
    for (const size_t d : model.displayOrder(axis)) {
      names += model.dimensions()[d].label().text + ' ';
    }
  }
  EXPECT_EQ(names, "region Variables arm Statistics ");
}

TEST_F(Tables, ADimensionNamedByAVariableIsLikeNoOther) {
  const VarIndex region = data.addNumber("region");
  data.splitVariablesNow = {region};
  begin();
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {1.0});
  BpPivotTable& table = pivot(procedure, "T");
  BpDimension& byText = table.Dimension(text("region"), 2);
  BpDimension& byVariable = table.Dimension(BpVariable(region, 2), 2);
  EXPECT_NE(&byText, &byVariable);
  byText.Category(text("t"));
  byVariable.Category(text("v")).Cell(count(1));
  const Table& model = *finish().tables[0];
  ASSERT_EQ(model.dimensions().size(), 3u);
  EXPECT_EQ(model.dimensions()[0].label().text, "region [region]");
  EXPECT_EQ(model.dimensions()[1].label().text, "region");
  EXPECT_EQ(model.dimensions()[2].label().text, "region [region] (2)");
  EXPECT_EQ(cellsText(model), "1/ t/ v/ 1.000\n");
}

TEST_F(Tables, CategoriesThatReadAlikeAreToldApart) {
  const VarIndex a = data.addNumber("v1", "Age", {{1, "yes"}, {2, "yes"}});
  const VarIndex b = data.addNumber("v2", "Age", {{1, "yes"}});
  begin();
  BpProcedure procedure("Proportions", 10);
  BpDimension& rows = dimensionAt(pivot(procedure, "T"), text("R"), 0);
  const auto add = [&](VarIndex variable, double value) {
    rows.Category(composite("^1 = ^2", BpVariable(variable, 2), BpDataValue(variable, value, 2)))
        .Cell(count(value));
  };
  add(a, 1);
  add(a, 2);
  add(b, 1);
  add(a, 1);
  EXPECT_EQ(cellsText(*finish().tables[0]),
            "Age = yes [v1]/ 1.000\nAge = yes [v1] (2)/ 2.000\nAge = yes [v2]/ 1.000\n");
}

TEST_F(Tables, ADimensionMayComeAfterTheFirstCells) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpPivotTable& table = pivot(procedure, "T");
  BpCategory& a = dimensionAt(table, text("R"), 0).Category(text("a"));
  a.Cell(count(1));
  BpDimension& late = dimensionAt(table, text("C"), 1);
  a.Cell(count(2));
  late.Category(text("x")).Cell(count(3));
  late.Category(text("x")).Cell(count(4));
  EXPECT_EQ(cellsText(*finish().tables[0]), "a/ (none) 2.000\na/ x/ 4.000\n");
}

TEST_F(Tables, ATableWithoutCellsIsLeftOut) {
  begin();
  BpProcedure procedure("Proportions", 10);
  dimensionAt(pivot(procedure, "empty"), text("R"), 0).Category(text("a"));
  dimensionAt(pivot(procedure, "full"), text("R"), 0).Category(text("a")).Cell(count(1));
  const DocumentProcedure& done = finish();
  ASSERT_EQ(done.tables.size(), 1u);
  EXPECT_EQ(done.tables[0]->title().text, "full");
}

TEST_F(Tables, EverySpecialValueIsKept) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpDimension& rows = dimensionAt(pivot(procedure, "T"), text("R"), 0);
  const double values[] = {kSystemMissing, std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(), 5e-324};
  for (int i = 0; i < 4; ++i) rows.Category(composite("^1", count(i))).Cell(statistic(values[i]));
  const Table& table = *finish().tables[0];
  EXPECT_EQ(table.cell(0).value, kSystemMissing);
  EXPECT_TRUE(std::isnan(table.cell(1).value));
  EXPECT_EQ(table.cell(2).value, values[2]);
  EXPECT_EQ(table.cell(3).value, 5e-324);
}

TEST_F(Tables, ProceduresAreApart) {
  begin("first");
  {
    BpProcedure procedure("Proportions", 10);
    dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text("a")).Cell(count(1));
  }
  finish();
  begin("second");
  BpProcedure procedure("Title", 10);
  dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text("b")).Cell(count(2));
  finish();
  ASSERT_EQ(document.procedures().size(), 2u);
  EXPECT_EQ(cellsText(*document.procedures()[0]->tables[0]), "a/ 1.000\n");
  EXPECT_EQ(cellsText(*document.procedures()[1]->tables[0]), "b/ 2.000\n");
  EXPECT_EQ(document.procedures()[1]->title, "Title");
  EXPECT_EQ(document.procedures()[1]->command, "second");
}

TEST_F(Tables, AProcedureOpensOneWhenNoneRuns) {
  {
    BpProcedure procedure("Proportions", 10);
    EXPECT_TRUE(document.isOpen());
  }
  EXPECT_EQ(finish().title, "Proportions");
  EXPECT_THROW(document.current(), std::logic_error);
}

}  // namespace
}  // namespace workbench
