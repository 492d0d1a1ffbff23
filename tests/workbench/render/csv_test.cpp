#include "sample_documents.h"

namespace workbench {
namespace {

class CsvTest : public testing::Test {
 protected:
  std::string csvOf(const char* category, double value) {
    bench.document.beginProcedure("", "");
    BpProcedure procedure("Proportions", 10);
    dimensionAt(pivot(procedure, "T"), text("R"), 0)
        .Category(text(category))
        .Cell(statistic(value));
    bench.document.finishProcedure(&bench.data);
    return bench.rendered(Format::kCsv);
  }
  SampleBench bench;
};

TEST_F(CsvTest, oneRowPerCell) { EXPECT_EQ(csvOf("a", 0.1), "table,R,value,note\nT,a,0.1,\n"); }

TEST_F(CsvTest, quotesWhatNeedsQuotes) {
  EXPECT_EQ(csvOf("a,\"b\"\nc\r", 1), "table,R,value,note\nT,\"a,\"\"b\"\"\nc\r\",1,\n");
}

TEST_F(CsvTest, formulasAreDefusedAndNumbersAreNot) {
  EXPECT_EQ(csvOf("= control", -0.5), "table,R,value,note\nT,'= control,-0.5,\n");
}

TEST_F(CsvTest, everyStartOfAFormula) {
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  std::string expected = "table,R,value,note\n";
  for (const std::string start : {"=1", "+1", "-1", "@x", "\tx"}) {
    dimensionAt(pivot(procedure, start.c_str()), text("R"), 0).Category(text("c")).Cell(count(1));
    expected += "'";
    expected += start;
    expected += ",c,1,\n";
  }
  bench.document.finishProcedure(&bench.data);
  EXPECT_EQ(bench.rendered(Format::kCsv), expected);
}

TEST_F(CsvTest, missingIsEmpty) {
  EXPECT_EQ(csvOf("a", kSystemMissing), "table,R,value,note\nT,a,,\n");
}

TEST_F(CsvTest, namesThatAreTakenGetANumber) {
  bench.data.splitVariablesNow = {bench.data.addNumber("value")};
  bench.data.separate = true;
  bench.data.splitNow = {3.0};
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  procedure.SplitChange();
  BpPivotTable& table = pivot(procedure, "T");
  dimensionAt(table, text("value"), 0, 2).Category(text("a"));
  dimensionAt(table, text("table"), 0, 1).Category(text("b")).Cell(count(1));
  bench.document.finishProcedure(&bench.data);
  EXPECT_EQ(bench.rendered(Format::kCsv),
            "table,value (2),value (3),table (2),value,note\nT,3,a,b,1,\n");
}

TEST_F(CsvTest, tablesShareTheColumnsOfTheRun) {
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  BpDimension& rows = dimensionAt(pivot(procedure, "T"), text("R"), 0);
  rows.Group(text("g"), 1, 2).Category(text("a")).Cell(count(1));
  dimensionAt(pivot(procedure, "U"), text("C"), 1).Category(text("b")).Cell(count(2));
  bench.document.finishProcedure(&bench.data);
  EXPECT_EQ(bench.rendered(Format::kCsv), "table,R,C,value,note\nT,g / a,,1,\nU,,b,2,\n");
}

}  // namespace
}  // namespace workbench
