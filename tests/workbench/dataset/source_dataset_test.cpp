#include "workbench/dataset/source_dataset.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/workbench/dataset/data_folder.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using testing::dataOptions;
using testing::refusal;
using Lines = std::vector<std::string>;

ValueKind kindOf(SourceDataset& data, const std::string& name) {
  return data.variable(data.find(name)).kind;
}

TEST(SourceDataset, DetectsKinds) {
  const DataFolder folder;
  const auto data = openDataset(dataOptions(folder.write(
      "a.csv",
      "i,f,e,b,d,t,s,z,x,none,mixed\n"
      "1,1.5,1e3,true,2026-01-31,12:30:00,2026-01-31 12:30:00.5,2026-01-31T12:00:00+02,a,,1\n"
      "-7,nan,-inf,FALSE,1969-12-31,00:00,2026-01-31 00:00,2026-01-31 "
      "12:00:00Z,\"b,\"\"c\",,x\n")));
  EXPECT_EQ(kindOf(*data, "i"), ValueKind::kNumber);
  EXPECT_EQ(kindOf(*data, "b"), ValueKind::kBoolean);
  EXPECT_EQ(kindOf(*data, "d"), ValueKind::kDate);
  EXPECT_EQ(kindOf(*data, "t"), ValueKind::kTime);
  EXPECT_EQ(kindOf(*data, "s"), ValueKind::kDateTime);
  EXPECT_EQ(kindOf(*data, "z"), ValueKind::kDateTime);
  EXPECT_EQ(kindOf(*data, "x"), ValueKind::kString);
  EXPECT_EQ(kindOf(*data, "none"), ValueKind::kNumber) << "nothing but blanks is a number";
  EXPECT_EQ(kindOf(*data, "mixed"), ValueKind::kString);
  EXPECT_EQ(
      casesOf(*data),
      (Lines{"1|1.5|1000|1|2026-01-31|12:30:00|2026-01-31 12:30:00.5|2026-01-31 10:00:00|a   |"
             ".|1|1",
             "-7|.|-Infinity|0|1969-12-31|00:00:00|2026-01-31 00:00:00|2026-01-31 12:00:00|"
             "b,\"c|.|x|1"}));
  const Variable& boolean = data->declaration(data->find("b"));
  ASSERT_NE(boolean.findLabel(1.0), nullptr);
  EXPECT_EQ(*boolean.findLabel(1.0), "true");
  EXPECT_EQ(*boolean.findLabel(0.0), "false");
}

TEST(SourceDataset, VariablesThatNoCommandNamesLookMissing) {
  const DataFolder folder;
  std::string text = "a,b,s\n";
  for (int i = 0; i < 50000; ++i) text += "1,2,x\n";
  const auto data = openDataset(dataOptions(folder.write("a.csv", text)));
  data->beginCommand({data->find("a")});
  ProcDSIterator iterator(data->openFeed());
  double count = 0;
  while (const Case* each = iterator.NextCase()) {
    count += iterator.Weight();
    ASSERT_EQ(each->Number(0), 1);
    ASSERT_EQ(each->Number(1), kSystemMissing) << count;
  }
  EXPECT_EQ(count, 50000);
}

TEST(SourceDataset, WordsForYesAreTexts) {
  const DataFolder folder;
  const auto data = openDataset(dataOptions(folder.write("a.csv", "a,b\nyes,t\nno,f\n")));
  EXPECT_EQ(kindOf(*data, "a"), ValueKind::kString);
  EXPECT_EQ(kindOf(*data, "b"), ValueKind::kString);
}

TEST(SourceDataset, ThousandsSeparatorsAndDecimalCommasAreTexts) {
  const DataFolder folder;
  const auto data =
      openDataset(dataOptions(folder.write("a.csv", "a;b;c\n1,5;1.000,0;1\n2;3;2\n")));
  EXPECT_EQ(kindOf(*data, "a"), ValueKind::kString);
  EXPECT_EQ(kindOf(*data, "b"), ValueKind::kString);
  EXPECT_EQ(kindOf(*data, "c"), ValueKind::kNumber);
}

class StringWidths : public ::testing::TestWithParam<int> {};

TEST_P(StringWidths, AreThoseOfTheWidestValue) {
  const DataFolder folder;
  const std::string wide(static_cast<size_t>(GetParam()), 'x');
  const std::string path = folder.write("a.csv", "s\nab  \n" + wide + "   \n\" \"\n\" lead\"\n");
  for (const size_t memory : {size_t{1} << 20, size_t{0}}) {
    DataOptions options = dataOptions(path);
    options.memoryLimit = memory;
    const auto data = openDataset(options);
    data->beginCommand({0});
    EXPECT_EQ(data->variable(0).width, std::max(5, GetParam()));
    const auto feed = data->openFeed();
    ASSERT_NE(feed, nullptr) << data->failure();
    ProcDSIterator iterator(data->openFeed());
    const size_t bytes = static_cast<size_t>((std::max(5, GetParam()) + 7) / 8) * 8;
    for (const std::string& value :
         {std::string("ab"), wide, std::string(), std::string(" lead")}) {
      const Case* each = iterator.NextCase();
      ASSERT_NE(each, nullptr);
      std::string padded = value;
      padded.resize(bytes, ' ');
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(each->Obs(0)), bytes), padded);
    }
    EXPECT_EQ(iterator.NextCase(), nullptr);
  }
}

INSTANTIATE_TEST_SUITE_P(Widths, StringWidths, ::testing::Values(1, 8, 9, 16, 17, 300));

TEST(SourceDataset, ReadsLinesAsOtherSystemsWriteThem) {
  const DataFolder folder;
  const Lines expected{"1|x|1", "0|y|1"};
  EXPECT_EQ(casesOf(folder.write("crlf.csv", "a,b\r\n1,x\r\n0,y\r\n")), expected);
  EXPECT_EQ(casesOf(folder.write("bom.csv",
                                 "\xEF\xBB\xBF"
                                 "a,b\n1,x\n0,y\n")),
            expected);
  EXPECT_EQ(casesOf(folder.write("open.csv", "a,b\n1,x\n0,y")), expected);
  EXPECT_EQ(casesOf(folder.write("tabs.tsv", "a\tb\n1\tx\n0\ty\n")), expected);
  EXPECT_EQ(casesOf(folder.write("semicolon.CSV", "a;b\n1;x\n0;y\n")), expected);
  EXPECT_EQ(casesOf(folder.write("bar.csv", "a|b\n1|x\n0|y\n")), expected);
  EXPECT_EQ(casesOf(folder.write("blank.csv", "a,b\n1,x\n\n0,y\n\n")), expected);
  EXPECT_EQ(casesOf(folder.write("quoted.csv", "\"a\",\"b\"\n\"1\",\"x\"\n\"0\",y\n")), expected);
  EXPECT_EQ(casesOf(folder.write("names.csv", " a , b \n1,x\n0,y\n")), expected);
}

TEST(SourceDataset, BlanksInANumbersColumnAreMissing) {
  const DataFolder folder;
  EXPECT_EQ(casesOf(folder.write("a.csv", "a,b\n 1 ,2\n  ,\n3,4\n")),
            (Lines{"1|2|1", ".|.|1", "3|4|1"}));
}

TEST(SourceDataset, NamesAndValuesMayHoldAnything) {
  const DataFolder folder;
  const auto data = openDataset(dataOptions(folder.write(
      "a.csv",
      "\"a "
      "\"\"x\"\"\",\"l'un\",\"two\nlines\",\xF0\x9F\x98\x80\n1,\xF0\x9F\x98\x80,\"p\nq\",2\n")));
  ASSERT_EQ(data->variableCount(), 4);
  EXPECT_EQ(data->declaration(0).name, "a \"x\"");
  EXPECT_EQ(data->declaration(1).name, "l'un");
  EXPECT_EQ(data->declaration(2).name, "two\nlines");
  EXPECT_EQ(data->find("\xF0\x9F\x98\x80"), 3);
  EXPECT_EQ(casesOf(*data), (Lines{"1|\xF0\x9F\x98\x80|p\nq|2|1"}));
}

TEST(SourceDataset, FileNamesMayLookLikePatterns) {
  const DataFolder folder;
  folder.write("b.csv", "a\n7\n");
  EXPECT_EQ(casesOf(folder.write("[ab]*?.csv", "a\n1\n")), (Lines{"1|1"}));
  EXPECT_EQ(casesOf(folder.write("it's \"x\".csv", "a\n2\n")), (Lines{"2|1"}));
}

TEST(SourceDataset, ReadsEveryFormat) {
  const DataFolder folder;
  const std::string rows =
      "SELECT * FROM (VALUES (1, 2.5, 'x', true, DATE '2026-01-31'), (NULL, NULL, NULL, NULL, "
      "NULL)) "
      "t(i, f, s, b, d)";
  const Lines expected{"1|2.5|x|1|2026-01-31|1", ".|.| |.|.|1"};
  EXPECT_EQ(casesOf(folder.make("a.parquet", "COPY (" + rows + ") TO FILE")), expected);
  EXPECT_EQ(casesOf(folder.make("a.json", "COPY (" + rows + ") TO FILE (ARRAY true)")), expected);
  EXPECT_EQ(casesOf(folder.make("a.jsonl", "COPY (" + rows + ") TO FILE (FORMAT json)")), expected);
  EXPECT_EQ(casesOf(folder.make("a.ndjson", "COPY (" + rows + ") TO FILE (FORMAT json)")),
            expected);
  EXPECT_EQ(casesOf(folder.make("a.csv.gz", "COPY (" + rows + ") TO FILE")), expected);
  EXPECT_EQ(casesOf(folder.make("a.tsv.zst",
                                "COPY (" + rows + ") TO FILE (DELIM '\t', COMPRESSION zstd)")),
            expected);
  EXPECT_EQ(casesOf(folder.makeDatabase("a.duckdb", "CREATE TABLE t AS " + rows)), expected);
}

TEST(SourceDataset, ConvertsEveryKindOfNumberAndTime) {
  const DataFolder folder;
  const auto data = openDataset(dataOptions(folder.makeDatabase(
      "a.db",
      "CREATE TYPE mood AS ENUM ('ok', 'sad'); CREATE TABLE t AS SELECT 1::TINYINT AS a, "
      "-2::SMALLINT AS b, 3::UBIGINT AS c, 1267650600228229401496703205376::HUGEINT AS d, "
      "12.25::DECIMAL(10,2) AS e, 'nan'::DOUBLE AS f, '-0'::DOUBLE AS g, 'inf'::FLOAT AS h, "
      "TIMESTAMP_S '2026-01-31 00:00:01' AS i, TIMESTAMP_NS '2026-01-31 00:00:00.5' AS j, "
      "TIMESTAMPTZ '2026-01-31 12:00:00+02' AS k, TIME '01:02:03.5' AS l, 'sad'::mood AS m, "
      "'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'::UUID AS n, NULL AS o")));
  EXPECT_EQ(casesOf(*data),
            (Lines{"1|-2|3|1.2676506002282294e+30|12.25|.|0|Infinity|2026-01-31 00:00:01|"
                   "2026-01-31 00:00:00.5|2026-01-31 10:00:00|01:02:03.5|2|"
                   "a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11|.|1"}));
}

TEST(SourceDataset, NestedColumnsSayWhyTheyCannotBeUsed) {
  const DataFolder folder;
  const std::string path = folder.write("a.jsonl", "{\"a\":1,\"l\":[1,2],\"o\":{\"k\":1}}\n");
  const auto data = openDataset(dataOptions(path));
  EXPECT_EQ(data->unusableBecause(0), "");
  EXPECT_NE(data->unusableBecause(1).find("l holds lists"), std::string::npos);
  EXPECT_NE(data->unusableBecause(2), "");
  EXPECT_EQ(casesOf(*data).size(), 1U);
  EXPECT_FALSE(data->failed());
  DataOptions options = dataOptions(path);
  options.split = {"l"};
  EXPECT_NE(refusal(options).find("--split: l holds lists"), std::string::npos);
}

TEST(SourceDataset, ReadsOnlyWhatACommandMentions) {
  const DataFolder folder;
  std::string text = "a,b,c\n";
  for (int i = 0; i < 200000; ++i) text += "1,2,3\n";
  text += "1,2,x\n";
  DataOptions options = dataOptions(folder.write("a.csv", text));
  options.collapse = CollapseMode::kNever;
  const auto data = openDataset(options);
  data->beginCommand({0});
  EXPECT_EQ(casesOf(*data, {0}).size(), 200001U) << "the bad value of c does not matter";
  EXPECT_FALSE(data->failed());
  EXPECT_EQ(data->caseCount(), 200001);
}

TEST(SourceDataset, AValueFarDownDecidesTheKind) {
  const DataFolder folder;
  std::string text = "a,b,c\n";
  for (int i = 0; i < 250000; ++i) text += "1,2,3\n";
  const std::string path = folder.write("a.csv", text + "1.5,x,2026-01-31\n");
  for (const CollapseMode mode : {CollapseMode::kAlways, CollapseMode::kNever}) {
    DataOptions options = dataOptions(path);
    options.collapse = mode;
    const auto data = openDataset(options);
    data->beginCommand({0, 1, 2});
    EXPECT_EQ(data->variable(0).kind, ValueKind::kNumber);
    EXPECT_EQ(data->variable(1).kind, ValueKind::kString);
    EXPECT_EQ(data->variable(2).kind, ValueKind::kString);
    EXPECT_FALSE(data->failed());
    const Lines lines = casesOf(*data, {0, 1, 2});
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "1.5|x|2026-01-31|1"), 1)
        << "nothing is rounded, neither";
  }
}

TEST(SourceDataset, ACommandCanUseWhatTheOneBeforeRead) {
  const DataFolder folder;
  const std::string path = folder.write("a.csv", "a,b\n1,x\n");
  const auto data = openDataset(dataOptions(path));
  EXPECT_EQ(casesOf(*data), (Lines{"1|x|1"}));
  std::filesystem::remove(path);
  data->beginCommand({1});
  EXPECT_EQ(casesOf(*data, {1}), (Lines{"x|1"}));
}

TEST(SourceDataset, WidthsOfVariablesNobodyMentioned) {
  const DataFolder folder;
  const auto data = openDataset(dataOptions(folder.write("a.csv", "a,b,c\n1,xyz  ,uv\n")));
  data->beginCommand({0});
  EXPECT_EQ(data->variable(1).width, 3);
  EXPECT_EQ(casesOf(*data, {0, 1}), (Lines{"1|xyz|1"}));
  EXPECT_EQ(data->variable(2).width, 2);
}

TEST(SourceDataset, TakesAQueryOverAFile) {
  const DataFolder folder;
  DataOptions options =
      dataOptions(folder.write("a.csv", "id,g,d\n1,x,2026-01-31\n2,y,2026-02-01\n3,x,\n"));
  options.query = "SELECT id % 2 AS odd, g || id AS name, d FROM data WHERE g = 'x'; ";
  EXPECT_EQ(casesOf(options), (Lines{"1|x1|2026-01-31|1", "1|x3|.|1"}));
}

TEST(SourceDataset, TakesTablesAndQueriesOfADatabase) {
  const DataFolder folder;
  DataOptions options =
      dataOptions(folder.makeDatabase("a.duckdb",
                                      "CREATE TABLE \"First one\" AS SELECT 1 AS a; CREATE SCHEMA "
                                      "s; CREATE TABLE s.second AS SELECT 2 "
                                      "AS b; CREATE VIEW v AS SELECT 3 AS c"));
  EXPECT_NE(refusal(options).find("name one with --table: First one, v, s.second"),
            std::string::npos)
      << refusal(options);
  options.table = "First one";
  EXPECT_EQ(casesOf(options), (Lines{"1|1"}));
  options.table = "S.SECOND";
  EXPECT_EQ(casesOf(options), (Lines{"2|1"}));
  options.table = "v";
  EXPECT_EQ(casesOf(options), (Lines{"3|1"}));
  options.table = "s.secnd";
  EXPECT_NE(refusal(options).find("there is no table s.secnd. Did you mean s.second?"),
            std::string::npos);
  options.table.reset();
  options.query = "SELECT a + b AS sum FROM \"First one\", s.second -- both";
  EXPECT_EQ(casesOf(options), (Lines{"3|1"}));
}

TEST(SourceDataset, UnknownWeightsAndSplitsGetAGuess) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write("a.csv", "weight,region\n1,2\n"));
  options.weight = "wieght";
  EXPECT_EQ(refusal(options), "--weight: the data have no variable wieght; did you mean weight?");
  options.weight = "WEIGHT";
  EXPECT_EQ(refusal(options), "");
  options.split = {"regoin"};
  EXPECT_EQ(refusal(options), "--split: the data have no variable regoin; did you mean region?");
  options.split = {"region", "REGION"};
  EXPECT_EQ(refusal(options), "--split: region is named twice.");
  options.split = {"weight"};
  EXPECT_EQ(refusal(options), "--split: weight is the weight variable, too.");
}

TEST(SourceDataset, ANameThatIsNearNoneGetsTheVariables) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write("a.csv", "weight,mass,Men,region\n1,2,3,4\n"));
  options.weight = "q";
  EXPECT_EQ(refusal(options),
            "--weight: the data have no variable q; they have weight, mass, Men, region.");
  options.weight = "m";
  EXPECT_EQ(refusal(options), "--weight: the data have no variable m; they have mass, Men.");
  options.weight.reset();
  options.split = {"q"};
  options.data = folder.write("wide.csv", "a1,a2,a3,a4,a5,a6,a7,a8,a9,b1,b2,b3\n");
  EXPECT_EQ(refusal(options),
            "--split: the data have no variable q; they have a1, a2, a3, a4, a5, a6, a7, a8, a9, "
            "b1 and 2 more.");
}

TEST(SourceDataset, MomentsAreNoWeights) {
  const DataFolder folder;
  const std::string path =
      folder.write("a.csv", "a,d,t,m,n,b\n1,2024-01-07,10:00,2024-01-07 10:00,2,true\n");
  for (const auto& [name, what] :
       {std::pair("d", "dates"), std::pair("t", "times"), std::pair("m", "dates and times")}) {
    for (const size_t memory : {size_t{1} << 20, size_t{0}}) {
      DataOptions options = dataOptions(path);
      options.weight = name;
      options.memoryLimit = memory;
      EXPECT_EQ(refusal(options), std::string("--weight: ") + name + " holds " + what +
                                      "; a weight is a number of cases. Name another variable, or "
                                      "make a number of it with --query.");
    }
  }
  for (const char* name : {"n", "b"}) {
    DataOptions options = dataOptions(path);
    options.weight = name;
    EXPECT_EQ(refusal(options), "");
  }
}

TEST(SourceDataset, AStringWeightDropsAllCases) {
  const DataFolder folder;
  for (const CollapseMode mode : {CollapseMode::kAlways, CollapseMode::kNever}) {
    DataOptions options = dataOptions(folder.write("a.csv", "a,w\n1,x\n1,y\n"));
    options.weight = "w";
    options.collapse = mode;
    const auto data = openDataset(options);
    data->beginCommand({0});
    for (const std::string& line : casesOf(*data, {0})) EXPECT_EQ(line, "1|.");
    EXPECT_EQ(data->caseCount(), 2);
  }
}

TEST(SourceDataset, DataWithoutACase) {
  const DataFolder folder;
  for (const char* text : {"a,b\n", "a,b"}) {
    for (const CollapseMode mode : {CollapseMode::kAlways, CollapseMode::kNever}) {
      DataOptions options = dataOptions(folder.write("a.csv", text));
      options.collapse = mode;
      options.split = {"b"};
      EXPECT_EQ(casesOf(options), Lines{});
      options.memoryLimit = 0;
      EXPECT_EQ(casesOf(options), Lines{});
    }
  }
}

}  // namespace
}  // namespace workbench
