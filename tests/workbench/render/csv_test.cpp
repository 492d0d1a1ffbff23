#include <limits>
#include <map>
#include <sstream>

#include "sample_documents.h"
#include "workbench/render/csv_fields.h"

namespace workbench {
namespace {

constexpr const char* kIntervals = "One-Sample Proportions Confidence Intervals";

TEST(CsvFields, QuotesWhatNeedsQuotes) {
  EXPECT_EQ(csvText("a,\"b\"\nc\r"), "\"a,\"\"b\"\"\nc\r\"");
  EXPECT_EQ(csvText("plain text; 'so'"), "plain text; 'so'");
  EXPECT_EQ(csvText(" a "), "\" a \"");
  EXPECT_EQ(csvText(""), "");
}

TEST(CsvFields, FormulasGetAnApostrophe) {
  const std::pair<const char*, const char*> examples[] = {
      {"=1", "'=1"},
      {"+x", "'+x"},
      {"-x", "'-x"},
      {"@x", "'@x"},
      {"\tx", "'\tx"},
      {"\rx", "\"'\rx\""},
      {"-1-2", "'-1-2"},
      {"-", "'-"},
      {"-1e", "'-1e"},
      {"+.", "'+."},
      {"-Infinity", "'-Infinity"},
  };
  for (const auto& [given, expected] : examples) EXPECT_EQ(csvText(given), expected);
}

TEST(CsvFields, WhatASpreadsheetWouldNotRunStaysAsItIs) {
  for (const char* text : {"-1", "+1.5", "-.5", "-1.", "-1e-5", "+2E+10", ">= 5", "< 5", "a=1"}) {
    EXPECT_EQ(csvText(text), text);
  }
}

TEST(CsvFields, NumbersInFull) {
  EXPECT_EQ(csvNumber(0.1), "0.1");
  EXPECT_EQ(csvNumber(1.0 / 3), "0.3333333333333333");
  EXPECT_EQ(csvNumber(1e-300), "1e-300");
  EXPECT_EQ(csvNumber(kSystemMissing), "");
  EXPECT_EQ(csvNumber(std::numeric_limits<double>::quiet_NaN()), "NaN");
  EXPECT_EQ(csvNumber(std::numeric_limits<double>::infinity()), "Inf");
  EXPECT_EQ(csvNumber(-std::numeric_limits<double>::infinity()), "-Inf");
}

/// Rows by column; good for texts without quotes.
using Rows = std::vector<std::map<std::string, std::string>>;

std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields{""};
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if (c == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

Rows readRows(const std::string& csv) {
  std::istringstream in(csv);
  std::string line;
  std::getline(in, line);
  const std::vector<std::string> names = fieldsOf(line);
  Rows rows;
  while (std::getline(in, line)) {
    const std::vector<std::string> fields = fieldsOf(line);
    EXPECT_EQ(fields.size(), names.size()) << line;
    auto& row = rows.emplace_back();
    for (size_t i = 0; i < names.size(); ++i) row[names[i]] = fields[i];
  }
  return rows;
}

class TidyCsv : public testing::Test {
 protected:
  /// Adds a row of intervals with that label.
  void addInterval(const BpLabel& variable, double lower) {
    BpPivotTable& table = pivot(procedure, kIntervals);
    dimensionAt(table, text("Interval Type"), 0, 1).Category(text("Wilson Score"));
    dimensionAt(table, text("Variables"), 0, 2).Category(variable);
    dimensionAt(table, text("Statistics"), 1)
        .Group(composite("^1% Confidence Interval", labelNumber(95)), 1, 2)
        .Category(text("Lower"))
        .Cell(statistic(lower));
  }
  BpComposite levels(VarIndex variable, const std::vector<double>& values) {
    BpComposite label("^1 = [%1:, ^1:]2");
    label.Add(BpVariable(variable, 2));
    label.Sublist();
    for (const double value : values) label.Add(BpDataValue(variable, value, 2));
    label.EndSublist();
    label.Finish();
    return label;
  }
  Rows rows() {
    bench.document.finishProcedure(&bench.data);
    return readRows(bench.rendered(Format::kCsv));
  }

  SampleBench bench;
  BpProcedure procedure{"Proportions", 10};
};

TEST_F(TidyCsv, ColumnsAreTheSameInEveryRun) {
  bench.document.finishProcedure(&bench.data);
  EXPECT_EQ(bench.rendered(Format::kCsv),
            "command,design,table,variable,success,variable2,success2,measurement,group_variable,"
            "group,method,successes,trials,proportion,test_value,difference,std_error,z,"
            "p_one_sided,p_two_sided,level,lower,upper,note\n");
}

TEST_F(TidyCsv, SeveralValuesStandBetweenBars) {
  const VarIndex x = bench.data.addNumber("x", "", {{1, "a|b"}, {2, "c"}});
  addInterval(levels(x, {1, 2}), 0.1);
  const Rows got = rows();
  ASSERT_EQ(got.size(), 1u);
  EXPECT_EQ(got[0].at("success"), "a||b|c");
  EXPECT_EQ(got[0].at("method"), "WILSON_SCORE");
  EXPECT_EQ(got[0].at("level"), "95");
  EXPECT_EQ(got[0].at("test_value"), "");
}

TEST_F(TidyCsv, TheSignOfACutIsKept) {
  const VarIndex x = bench.data.addNumber("x");
  addInterval(composite("^1 >= ^2", BpVariable(x, 2), BpDataValue(x, 2.5, 0)), 0.1);
  EXPECT_EQ(rows()[0].at("success"), ">= 2.5");
}

TEST_F(TidyCsv, ValuesThatReadAlikeKeepTheirNumber) {
  const VarIndex x = bench.data.addNumber("x", "", {{1, "Yes"}, {2, "Yes"}});
  addInterval(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2)), 0.1);
  addInterval(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 2.0, 2)), 0.2);
  const Rows got = rows();
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0].at("success"), "Yes");
  EXPECT_EQ(got[1].at("success"), "Yes (2)");
}

TEST_F(TidyCsv, VariablesOfOneLabelAreToldByTheirNames) {
  const VarIndex a = bench.data.addNumber("a", "Age"), b = bench.data.addNumber("b", "Age");
  addInterval(composite("^1 = ^2", BpVariable(a, 2), BpDataValue(a, 1.0, 2)), 0.1);
  addInterval(composite("^1 = ^2", BpVariable(b, 2), BpDataValue(b, 1.0, 2)), 0.2);
  const Rows got = rows();
  EXPECT_EQ(got[0].at("variable"), "a");
  EXPECT_EQ(got[1].at("variable"), "b");
  EXPECT_EQ(got[1].at("success"), "1");
}

TEST_F(TidyCsv, ACategoryWithoutCellsHasARowOfItsOwn) {
  const VarIndex x = bench.data.addNumber("x");
  addInterval(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2)), 0.1);
  dimensionAt(pivot(procedure, kIntervals), text("Variables"), 0, 2)
      .Category(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, kSystemMissing, 2)));
  const Rows got = rows();
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[1].at("variable"), "x");
  EXPECT_EQ(got[1].at("success"), ".");
  EXPECT_EQ(got[1].at("level"), "");
  EXPECT_EQ(got[1].at("lower"), "");
}

TEST_F(TidyCsv, SplitVariablesHaveColumnsUnderTheirNames) {
  NamedVariables& data = bench.data;
  const VarIndex x = data.addNumber("x");
  data.splitVariablesNow = {data.addString("region", "Part of the country"),
                            data.addNumber("group"), data.addNumber("split_group")};
  for (const double group : {1.0, kSystemMissing}) {
    data.splitNow = {std::string("=north"), group, 3.0};
    procedure.SplitChange();
    addInterval(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2)), group);
  }
  const Rows got = rows();
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0].at("region"), "'=north");
  EXPECT_EQ(got[0].at("split_group"), "1");
  EXPECT_EQ(got[1].at("split_group"), ".");
  EXPECT_EQ(got[1].at("split_split_group"), "3");
  EXPECT_EQ(got[0].at("group"), "");
}

TEST_F(TidyCsv, TablesOfTheirOwnNameTheirGroup) {
  NamedVariables& data = bench.data;
  const VarIndex x = data.addNumber("x");
  data.splitVariablesNow = {data.addString("region", "Part", {{"n", "North"}})};
  data.separate = true;
  for (const char* region : {"n", ""}) {
    data.splitNow = {std::string(region)};
    procedure.SplitChange();
    addInterval(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2)), 0.1);
  }
  const Rows got = rows();
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0].at("region"), "North");
  EXPECT_EQ(got[1].at("region"), "");
}

TEST_F(TidyCsv, NotesStandOnceEach) {
  const VarIndex x = bench.data.addNumber("x");
  addInterval(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2)), kSystemMissing);
  BpGroup& bounds = dimensionAt(pivot(procedure, kIntervals), text("Statistics"), 1)
                        .Group(composite("^1% Confidence Interval", labelNumber(95)), 1, 2);
  bounds.Category(text("Upper")).Cell(statistic(kSystemMissing));
  for (const char* bound : {"Lower", "Upper"}) {
    BpCellNote note;
    note.text = BpCellText::Replicate(text("Stat miss not enough cases ..."));
    bounds.Category(text(bound)).CellNote(note);
  }
  const Rows got = rows();
  EXPECT_EQ(got[0].at("note"), "Cannot be computed from these cases.");
  EXPECT_EQ(got[0].at("lower"), "");
}

}  // namespace
}  // namespace workbench
