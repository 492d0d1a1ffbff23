#include "workbench/results/grid.h"

#include "sample_documents.h"

namespace workbench {
namespace {

/// Paths of all places of an axis, one on a line.
std::string placesText(const GridAxis& axis) {
  std::string result;
  for (size_t place = 0; place < axis.placeCount(); ++place) {
    for (size_t d = 0; d < axis.dimensions().size(); ++d) {
      const std::vector<std::string_view> path = axis.path(place, d);
      if (path.empty()) result += "-";
      for (const std::string_view label : path) result += std::string(label) + '/';
      result += ' ';
    }
    result += '\n';
  }
  return result;
}

class Grids : public testing::Test {
 protected:
  Grids() { bench.document.beginProcedure("", ""); }
  const Table& table() { return *bench.document.current().tables[0]; }
  SampleBench bench;
  BpProcedure procedure{"Proportions", 10};
};

TEST_F(Grids, PlacesStandInTreeOrder) {
  BpDimension& columns = dimensionAt(pivot(procedure, "T"), text("C"), 1);
  columns.Group(text("G"), 1, 2).Category(text("a")).Cell(count(1));
  columns.Category(text("b")).Cell(count(2));
  columns.Group(text("G"), 1, 2).Category(text("c")).Cell(count(3));
  const Grid grid(table());
  EXPECT_EQ(placesText(grid.columns()), "G/a/ \nG/c/ \nb/ \n");
  EXPECT_EQ(grid.rows().placeCount(), 1u);
  EXPECT_EQ(grid.cell(0, 0), 0u);
  EXPECT_EQ(grid.cell(0, 1), 2u);
  EXPECT_EQ(grid.cell(0, 2), 1u);
}

TEST_F(Grids, OuterDimensionsComeFirst) {
  BpPivotTable& pivotTable = pivot(procedure, "T");
  BpDimension& inner = dimensionAt(pivotTable, text("I"), 0, 1);
  BpDimension& outer = dimensionAt(pivotTable, text("O"), 0, 2);
  for (const char* o : {"1", "2"}) {
    outer.Category(text(o));
    for (const char* i : {"a", "b"}) inner.Category(text(i)).Cell(count(1));
  }
  EXPECT_EQ(placesText(Grid(table()).rows()), "1/ a/ \n1/ b/ \n2/ a/ \n2/ b/ \n");
}

TEST_F(Grids, SplitGroupsStandInTheOrderInWhichTheyWereWritten) {
  bench.data.splitVariablesNow = {bench.data.addString("region"), bench.data.addNumber("year")};
  const std::vector<std::vector<SplitValue>> groups{{"east", 2.0}, {"west", 1.0}, {"west", 2.0}};
  for (const std::vector<SplitValue>& group : groups) {
    bench.data.splitNow = group;
    procedure.SplitChange();
    dimensionAt(pivot(procedure, "T"), text("C"), 1).Category(text("n")).Cell(count(1));
  }
  EXPECT_EQ(placesText(Grid(table()).rows()), "east/ 2/ \nwest/ 1/ \nwest/ 2/ \n");
}

TEST_F(Grids, CategoriesWithoutCellsAreShownUnlessAMissingValueShows) {
  const VarIndex x = bench.data.addNumber("x");
  BpPivotTable& pivotTable = pivot(procedure, "T");
  BpDimension& inner = dimensionAt(pivotTable, text("I"), 0, 1);
  BpDimension& outer = dimensionAt(pivotTable, text("O"), 0, 2);
  BpDimension& columns = dimensionAt(pivotTable, text("C"), 1);
  outer.Category(composite("^1", BpDataValue(x, kSystemMissing, 2)));
  outer.Category(text("empty"));
  outer.Category(text("full"));
  inner.Category(text("i"));
  columns.Category(text("Z"));
  columns.Category(text("value")).Cell(count(1));
  const Grid grid(table());
  EXPECT_EQ(placesText(grid.rows()), "empty/ - \nfull/ i/ \n");
  EXPECT_EQ(placesText(grid.columns()), "Z/ \nvalue/ \n");
  EXPECT_EQ(grid.cell(0, 0), Grid::kNoCell);
  EXPECT_EQ(grid.cell(1, 1), 0u);
}

TEST_F(Grids, AMissingValueWithCellsIsShown) {
  const VarIndex x = bench.data.addNumber("x");
  dimensionAt(pivot(procedure, "T"), text("R"), 0)
      .Category(composite("^1", BpDataValue(x, kSystemMissing, 2)))
      .Cell(count(1));
  EXPECT_EQ(placesText(Grid(table()).rows()), "./ \n");
}

}  // namespace
}  // namespace workbench
