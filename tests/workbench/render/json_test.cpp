#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>

#include "sample_documents.h"

namespace workbench {
namespace {

using nlohmann::json;

json finished(SampleBench& bench) {
  bench.document.finishProcedure(&bench.data);
  return json::parse(bench.rendered(Format::kJson));
}

TEST(Json, EverySampleIsWellFormed) {
  for (const SampleDocument& sample : sampleDocuments()) {
    SampleBench bench;
    sample.make(bench);
    const json document = finished(bench);
    EXPECT_EQ(document["schema"], "proportions-output/1") << sample.name;
    EXPECT_FALSE(document["procedures"].empty()) << sample.name;
  }
}

TEST(Json, AnEmptyDocument) {
  const SampleBench bench;
  EXPECT_EQ(json::parse(bench.rendered(Format::kJson)),
            (json{{"schema", "proportions-output/1"}, {"procedures", json::array()}}));
}

TEST(Json, EveryCellNamesItsPlaceByLabelsThatAreListed) {
  for (const SampleDocument& sample : sampleDocuments()) {
    SampleBench bench;
    sample.make(bench);
    const json document = finished(bench);
    for (const json& procedure : document["procedures"]) {
      for (const json& table : procedure["tables"]) {
        for (const json& cell : table["cells"]) {
          EXPECT_EQ(cell["at"].size(), table["dimensions"].size());
          for (const json& dimension : table["dimensions"]) {
            json categories = dimension["categories"];
            for (const json& step : cell["at"][dimension["name"].get<std::string>()]) {
              const auto found = std::find_if(categories.begin(), categories.end(),
                                              [&](const json& c) { return c["label"] == step; });
              ASSERT_NE(found, categories.end()) << step;
              const json inner = found->value("categories", json::array());
              categories = inner;
            }
          }
        }
      }
    }
  }
}

TEST(Json, ValuesReadBack) {
  SampleBench bench;
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  BpDimension& rows = dimensionAt(pivot(procedure, "T"), text("R"), 0);
  const double values[] = {1.0 / 3, 5e-324, 1.7e308, -0.1, 4, 1e22, 123456789012345.6};
  for (size_t i = 0; i < std::size(values); ++i) {
    rows.Category(composite("^1", count(static_cast<double>(i)))).Cell(statistic(values[i]));
  }
  const json document = finished(bench);
  const json& cells = document["procedures"][0]["tables"][0]["cells"];
  for (size_t i = 0; i < std::size(values); ++i) {
    EXPECT_EQ(cells[i]["value"].get<double>(), values[i]);
  }
}

TEST(Json, WhatIsNoNumber) {
  SampleBench bench;
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  BpDimension& rows = dimensionAt(pivot(procedure, "T"), text("R"), 0);
  rows.Category(text("a")).Cell(statistic(kSystemMissing));
  rows.Category(text("b")).Cell(statistic(std::nan("")));
  rows.Category(text("c")).Cell(statistic(std::numeric_limits<double>::infinity()));
  rows.Category(text("d")).Cell(statistic(-std::numeric_limits<double>::infinity()));
  const json document = finished(bench);
  const json& cells = document["procedures"][0]["tables"][0]["cells"];
  EXPECT_TRUE(cells[0]["value"].is_null());
  EXPECT_EQ(cells[1]["value"], "NaN");
  EXPECT_EQ(cells[2]["value"], "Infinity");
  EXPECT_EQ(cells[3]["value"], "-Infinity");
}

TEST(Json, AbsentMembers) {
  SampleBench bench;
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text("a")).Cell(count(1));
  BpError(text("W ..."), 2, 2);
  const json document = finished(bench);
  const json& made = document["procedures"][0];
  EXPECT_FALSE(made["messages"][0].contains("split"));
  EXPECT_FALSE(made["tables"][0]["cells"][0].contains("notes"));
  EXPECT_EQ(made["tables"][0]["split"], json::object());
  const json& category = made["tables"][0]["dimensions"][0]["categories"][0];
  EXPECT_FALSE(category.contains("notes"));
  EXPECT_FALSE(category.contains("categories"));
}

TEST(Json, LabelsNameTheirVariablesAndValues) {
  SampleBench bench;
  NamedVariables& data = bench.data;
  const VarIndex x = data.addNumber("x", "Smoker", {{1, "Yes"}}), s = data.addString("s");
  const VarIndex day = data.addNumber("day"), moment = data.addNumber("moment");
  data.setKind(day, ValueKind::kDate);
  data.setKind(moment, ValueKind::kDateTime);
  data.splitVariablesNow = {s};
  data.splitNow = {std::string("north")};
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  procedure.SplitChange();
  BpPivotTable& table = pivot(procedure, "T");
  BpDimension& groups = dimensionAt(table, BpVariable(day, 2), 0, 1);
  BpDimension& rows = dimensionAt(table, text("Variables"), 0, 2);
  BpDimension& columns = dimensionAt(table, text("Statistics"), 1);
  groups.Category(composite("= ^1", BpDataValue(day, 86400.0, 2)));
  rows.Category(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2)));
  columns.Group(composite("^1% Confidence Interval", labelNumber(99.5)), 1, 2)
      .Category(text("Lower"))
      .Cell(statistic(0.5));
  rows.Category(composite("^1 = ^2", BpVariable(s, 2), BpDataValue(s, "", 2)));
  rows.Category(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, kSystemMissing, 2)));
  rows.Category(composite("^1 = ^2", BpVariable(moment, 2), BpDataValue(moment, 60.0, 2)));
  rows.Category(composite("Pair ^1 vars ^2 ^3 ...", count(1), BpVariable(x, 2), BpVariable(s, 2)));

  const json dimensions = finished(bench)["procedures"][0]["tables"][0]["dimensions"];
  const auto named = [&](const char* name) {
    return *std::find_if(dimensions.begin(), dimensions.end(),
                         [&](const json& d) { return d["name"] == name; });
  };
  EXPECT_EQ(named("s")["variable"], "s");
  EXPECT_EQ(named("s")["categories"][0]["values"], json({"north"}));
  EXPECT_EQ(named("day")["variable"], "day");
  EXPECT_EQ(named("day")["categories"][0]["values"], json({"1970-01-02"}));
  EXPECT_FALSE(named("day")["categories"][0].contains("variables"));
  EXPECT_FALSE(named("Variables").contains("variable"));
  const json categories = named("Variables")["categories"];
  EXPECT_EQ(categories[0]["variables"], json({"x"}));
  EXPECT_EQ(categories[0]["values"], json({1.0}));
  EXPECT_EQ(categories[1]["values"], json({""}));
  EXPECT_EQ(categories[2]["values"], json({nullptr}));
  EXPECT_EQ(categories[3]["values"], json({"1970-01-01T00:01:00"}));
  EXPECT_EQ(categories[4]["variables"], json({"x", "s"}));
  EXPECT_FALSE(categories[4].contains("values"));
  EXPECT_FALSE(categories[4].contains("level"));
  EXPECT_EQ(named("Statistics")["categories"][0]["level"], 99.5);
}

}  // namespace
}  // namespace workbench
