#include "host/messages.h"
#include "output_fixture.h"

namespace workbench {
namespace {

class SplitTables : public OutputTest {
 protected:
  SplitTables() {
    region_ = data.addString("region", "", {{"n", "North"}});
    year_ = data.addNumber("year", "Year of birth");
    data.splitVariablesNow = {region_, year_};
    begin();
  }

  static void write(BpProcedure& procedure, const char* category, double value) {
    dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text(category)).Cell(count(value));
  }

  VarIndex region_, year_;
};

TEST_F(SplitTables, GroupsAreRowsOfSharedTables) {
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {"n", 1990.0});
  write(procedure, "a", 1);
  enterGroup(procedure, {"s", 1990.0});  // asks for no table
  enterGroup(procedure, {"w", kSystemMissing});
  write(procedure, "a", 2);
  const DocumentProcedure& done = finish();
  ASSERT_EQ(done.tables.size(), 1u);
  const Table& table = *done.tables[0];
  EXPECT_TRUE(table.split().empty());
  EXPECT_EQ(table.dimensions()[0].label().text, "region");
  EXPECT_EQ(table.dimensions()[1].label().text, "Year of birth");
  EXPECT_EQ(treeText(table.dimensions()[0]), "North, w");
  EXPECT_EQ(table.dimensions()[0].nodes()[1].label.key, "n");
  EXPECT_EQ(treeText(table.dimensions()[1]), "1990, .");
  EXPECT_EQ(cellsText(table), "North/ 1990/ a/ 1.000\nw/ ./ a/ 2.000\n");
}

TEST_F(SplitTables, GroupsHaveTablesOfTheirOwn) {
  data.separate = true;
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {"n", 1.0});
  write(procedure, "a", 1);
  enterGroup(procedure, {"s", 1.0});
  write(procedure, "a", 2);
  enterGroup(procedure, {"n", 1.0});  // back in the first group
  write(procedure, "b", 3);
  const DocumentProcedure& done = finish();
  ASSERT_EQ(done.tables.size(), 2u);
  EXPECT_EQ(done.tables[0]->split(), (ShownSplit{{"region", "North"}, {"Year of birth", "1"}}));
  EXPECT_EQ(done.tables[1]->split(), (ShownSplit{{"region", "s"}, {"Year of birth", "1"}}));
  EXPECT_EQ(cellsText(*done.tables[0]), "a/ 1.000\nb/ 3.000\n");
  EXPECT_EQ(cellsText(*done.tables[1]), "a/ 2.000\n");
  EXPECT_EQ(done.tables[0]->dimensions().size(), 1u);
}

TEST_F(SplitTables, TheGroupIsRememberedUntilTheNextChange) {
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {"n", 1.0});
  data.splitNow = {"s", 2.0};  // the data have moved on
  write(procedure, "a", 1);
  EXPECT_EQ(cellsText(*finish().tables[0]), "North/ 1/ a/ 1.000\n");
}

TEST_F(SplitTables, AChangeAlonePutsNothingOut) {
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {"n", 1.0});
  enterGroup(procedure, {"s", 1.0});
  const DocumentProcedure& done = finish();
  EXPECT_TRUE(done.tables.empty());
  EXPECT_TRUE(done.messages.empty());
}

TEST_F(SplitTables, ValuesThatReadAlikeAreDifferentGroups) {
  const VarIndex x = data.addNumber("x", "", {{1, "same"}, {2, "same"}});
  data.splitVariablesNow = {x};
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {1.0});
  write(procedure, "a", 1);
  enterGroup(procedure, {2.0});
  write(procedure, "a", 2);
  EXPECT_EQ(cellsText(*finish().tables[0]), "same [x]/ a/ 1.000\nsame [x] (2)/ a/ 2.000\n");
}

TEST_F(SplitTables, SplitVariablesThatReadAlikeAreToldApart) {
  const VarIndex a = data.addNumber("a", "Same"), b = data.addNumber("b", "Same");
  data.splitVariablesNow = {a, b};
  data.separate = true;
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {1.0, 2.0});
  write(procedure, "x", 1);
  EXPECT_EQ(finish().tables[0]->split(), (ShownSplit{{"Same [a]", "1"}, {"Same [b]", "2"}}));
}

TEST_F(SplitTables, AMessageWithTheSplitListNamesItsGroup) {
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {"n", 1990.0});
  BpComposite label("No ^1 in [%1 = %2:; ^1 = ^2:]2 ...");
  label.Add(BpVariable(year_, 2));
  label.Sublist();
  label.SplitList();
  label.EndSublist();
  label.Finish();
  BpError(label, 2, 2);
  BpError(composite("No ^1 ...", BpVariable(year_, 2)), 2, 2);
  ParserMessage().GenericError("E ^1", "x");
  const DocumentProcedure& done = finish();
  ASSERT_EQ(done.messages.size(), 3u);
  EXPECT_EQ(done.messages[0].text, "No Year of birth in region = North; Year of birth = 1990 ...");
  EXPECT_EQ(done.messages[0].arguments, (std::vector<std::string>{"Year of birth"}));
  EXPECT_EQ(done.messages[0].split, (ShownSplit{{"region", "North"}, {"Year of birth", "1990"}}));
  EXPECT_TRUE(done.messages[1].split.empty());
  EXPECT_TRUE(done.messages[2].split.empty());
}

TEST_F(SplitTables, TheListIsEmptyWithoutSplitVariables) {
  data.splitVariablesNow.clear();
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {});
  BpComposite label("In [%1 = %2:, ^1 = ^2:]1.");
  label.Sublist();
  label.SplitList();
  label.EndSublist();
  label.Finish();
  EXPECT_EQ(describe(label).text, "In .");
  write(procedure, "a", 1);
  EXPECT_EQ(finish().tables[0]->dimensions().size(), 1u);
}

TEST_F(SplitTables, AGroupWithoutValidCasesIsNamed) {
  BpProcedure procedure("Proportions", 10);
  enterGroup(procedure, {"n", 2.0});
  ProcedureDataSource source;
  ACAInpAdaptMsg messages(source);
  messages.NoValidCasesSplit();
  messages.NoValidCases();
  const DocumentProcedure& done = finish();
  ASSERT_EQ(done.messages.size(), 2u);
  EXPECT_EQ(done.messages[0].severity, Severity::kWarning);
  EXPECT_EQ(done.messages[0].level, 2);
  EXPECT_TRUE(done.messages[0].arguments.empty());
  EXPECT_EQ(done.messages[0].split, (ShownSplit{{"region", "North"}, {"Year of birth", "2"}}));
  EXPECT_EQ(done.messages[1].severity, Severity::kWarning);
  EXPECT_TRUE(done.messages[1].split.empty());
  EXPECT_FALSE(done.failed);
}

TEST_F(SplitTables, TheNextProcedureKnowsNoGroup) {
  {
    BpProcedure procedure("Proportions", 10);
    enterGroup(procedure, {"n", 2.0});
  }
  finish();
  begin();
  BpProcedure procedure("Proportions", 10);
  write(procedure, "a", 1);
  EXPECT_EQ(finish().tables[0]->dimensions().size(), 1u);
}

}  // namespace
}  // namespace workbench
