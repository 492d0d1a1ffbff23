// Folders and patterns as DATA.
#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "tests/workbench/dataset/data_folder.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using testing::dataOptions;
using testing::refusal;
using Lines = std::vector<std::string>;

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// Writes a file together with the folders on its way.
std::string put(const DataFolder& folder, const std::string& name, const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
  return folder.write(name, bytes);
}

TEST(DataFiles, AFolderIsAllItsFilesInTheOrderOfTheirPaths) {
  const DataFolder folder;
  put(folder, "d/b.csv", "x,y\n3,c\n");
  put(folder, "d/a.csv", "x,y\n1,a\n");
  put(folder, "d/B/c.csv", "y,x\nb,2\n");
  put(folder, "d/_old.csv", "z\n9\n");
  put(folder, "d/.hidden/e.csv", "z\n9\n");
  put(folder, "d/notes.txt", "no data");
  EXPECT_EQ(casesOf(folder.path("d")), (Lines{"b|2|1", "a|1|1", "c|3|1"}));
  EXPECT_EQ(casesOf(folder.path("d/")), (Lines{"b|2|1", "a|1|1", "c|3|1"}));
  EXPECT_EQ(casesOf(folder.path("d/[ab].csv")), (Lines{"1|a|1", "3|c|1"}));
}

TEST(DataFiles, KindsAreFoundOverAllFilesTogether) {
  const DataFolder folder;
  put(folder, "d/a.csv", "x\n1\n");
  put(folder, "d/b.csv", "x\nlow\n");
  EXPECT_EQ(casesOf(folder.path("d")), (Lines{"1  |1", "low|1"}));
  put(folder, "j/a.json", R"([{"x":1}])");
  put(folder, "j/b.jsonl", "{\"x\":\"low\"}\n");
  EXPECT_EQ(casesOf(folder.path("j")), (Lines{"1  |1", "low|1"}));
}

TEST(DataFiles, PartsOfPathsAreColumns) {
  const DataFolder folder;
  put(folder, "d/year=2024/site=a%20b/part.csv", "x\n1\n");
  put(folder, "d/year=2025/site=__HIVE_DEFAULT_PARTITION__/part.csv", "x\n2\n");
  EXPECT_EQ(casesOf(folder.path("d")), (Lines{"1|2024|a b|1", "2|2025|   |1"}));
  EXPECT_EQ(casesOf(folder.path("d/year=*/*/part.csv")), (Lines{"1|2024|a b|1", "2|2025|   |1"}));
  EXPECT_EQ(casesOf(folder.path("d/year=2024/*/part.csv")), (Lines{"1|a b|1"}))
      << "only from the first wildcard on";
  EXPECT_EQ(casesOf(folder.path("d/year=2024/site=a%20b/part.csv")), (Lines{"1|1"}))
      << "a single file is just that";
  for (const char* kind : {"json", "parquet"}) {
    const std::string below = std::string(kind) + "/k=7/a." + kind;
    put(folder, below, "");
    folder.make(below, "COPY (SELECT 1 AS x) TO FILE");
    EXPECT_EQ(casesOf(folder.path(kind)), (Lines{"1|7|1"})) << kind;
  }
}

TEST(DataFiles, WhatDoesNotBelongTogetherIsRefused) {
  const DataFolder folder;
  put(folder, "formats/a.csv", "x\n1\n");
  put(folder, "formats/b.tsv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("formats")), "are of different formats"));
  put(folder, "columns/a.csv", "x\n1\n");
  put(folder, "columns/b.csv", "z\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("columns")), "columns/b.csv"))
      << refusal(folder.path("columns"));
  put(folder, "paths/k=1/a.csv", "x\n1\n");
  put(folder, "paths/b.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("paths")), "the names in its path are"));
  put(folder, "clash/x=1/a.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("clash")), "x")) << "the column and the path";
  put(folder, "twice/k=1/k=2/a.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("twice")), "k= twice"));
  std::filesystem::create_directories(folder.path("empty"));
  EXPECT_TRUE(has(refusal(folder.path("empty")), "the folder holds no data file"));
  EXPECT_TRUE(has(refusal(folder.path("none*.csv")), "no file matches the pattern"));
  put(folder, "parquet/a.parquet", "");
  put(folder, "parquet/b.parquet", "");
  folder.make("parquet/a.parquet", "COPY (SELECT 1 AS x) TO FILE");
  folder.make("parquet/b.parquet", "COPY (SELECT 1 AS z) TO FILE");
  EXPECT_TRUE(has(refusal(folder.path("parquet")), "its columns differ from those of"));
}

TEST(DataFiles, LinksAreFollowedButNothingIsCountedTwice) {
  const DataFolder folder;
  const auto link = [&](const std::string& to, const std::string& name) {
    std::filesystem::create_symlink(folder.path(to), folder.path(name));
  };
  put(folder, "outside/y/b.csv", "x\n2\n");
  put(folder, "d/a.csv", "x\n1\n");
  link("outside", "d/linked");
  EXPECT_EQ(casesOf(folder.path("d")), (Lines{"1|1", "2|1"}));
  link("outside/y", "d/z");
  EXPECT_TRUE(has(refusal(folder.path("d")), folder.path("d/z") + " are the same, by a link"))
      << refusal(folder.path("d"));
  put(folder, "e/a.csv", "x\n1\n");
  link("e", "e/round");
  EXPECT_TRUE(has(refusal(folder.path("e")), "e/round are the same, by a link"));
  put(folder, "f/2024.csv", "x\n1\n");
  link("f/2024.csv", "f/latest.csv");
  EXPECT_TRUE(has(refusal(folder.path("f")), "f/latest.csv are the same, by a link"));
  EXPECT_TRUE(has(refusal(folder.path("f/*.csv")), "f/latest.csv are the same, by a link"));
  put(folder, "g/k=1/a.csv", "x\n1\n");
  std::filesystem::create_directories(folder.path("g/k=2"));
  std::filesystem::create_hard_link(folder.path("g/k=1/a.csv"), folder.path("g/k=2/a.csv"));
  EXPECT_EQ(casesOf(folder.path("g")), (Lines{"1|1|1", "1|2|1"})) << "two files of one content";
}

TEST(DataFiles, PatternsHaveNoDoubleStars) {
  const DataFolder folder;
  put(folder, "d/a.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("d/**/*.csv")), "'**' is not known. Name the folder"));
  EXPECT_TRUE(has(refusal(folder.path("**.csv")), "'**' is not known"));
  put(folder, "a**.csv", "x\n7\n");
  EXPECT_EQ(casesOf(folder.path("a**.csv")), (Lines{"7|1"})) << "a file of that very name";
}

TEST(DataFiles, PartsOfPathsMustBeTexts) {
  const DataFolder folder;
  put(folder, "nul/k=a%00b/a.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("nul")), "the part 'a%00b' of the path holds a NUL byte"));
  put(folder, "bytes/k=%FF/a.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("bytes")), "'%FF' of the path holds bytes that are not"));
  put(folder, "name/%C3=1/a.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("name")), "'%C3' of the path holds bytes that are not"));
  put(folder, "raw/k=\xFF/a.csv", "x\n1\n");
  EXPECT_TRUE(has(refusal(folder.path("raw")), "holds bytes that are not UTF-8"));
  put(folder, "plain/k=50%/a.csv", "x\n1\n");
  EXPECT_EQ(casesOf(folder.path("plain")), (Lines{"1|50%|1"})) << "no code, so itself";
}

TEST(DataFiles, JsonFilesHaveTheSameKeys) {
  const DataFolder folder;
  put(folder, "j/a.jsonl", "{\"x\":1,\"y\":2}\n{\"x\":3}\n");
  put(folder, "j/b.json", "[]");
  put(folder, "j/c.jsonl", "{\"y\":5}\n{\"x\":4}\n");
  EXPECT_EQ(casesOf(folder.path("j")), (Lines{"1|2|1", "3|.|1", ".|5|1", "4|.|1"}));
  put(folder, "j/d.jsonl", "{\"x\":1}\n");
  EXPECT_TRUE(has(refusal(folder.path("j")), "j/d.jsonl lacks the key y of "));
  put(folder, "j/d.jsonl", "{\"x\":1,\"y\":2,\"z\":3}\n");
  EXPECT_TRUE(has(refusal(folder.path("j")), "j/d.jsonl has the key z, which is not in "));
}

TEST(DataFiles, ParquetTypesAreOnlyPutTogetherWhenNoValueBecomesAnother) {
  const DataFolder folder;
  const auto read = [&](const std::string& a, const std::string& b, const char* extra) {
    put(folder, std::string("p") + extra + "/a.parquet", "");
    put(folder, std::string("p") + extra + "/b.parquet", "");
    folder.make(std::string("p") + extra + "/a.parquet",
                "COPY (SELECT " + a + " AS x, 1 AS y) TO FILE");
    folder.make(std::string("p") + extra + "/b.parquet",
                "COPY (SELECT " + b + " AS x, 2 AS y) TO FILE");
    return casesOf(folder.path("p"));
  };
  for (const char* extra : {"", "/k=1"}) {
    std::filesystem::remove_all(folder.path("p"));
    const std::string end = *extra == '\0' ? "|1" : "|1|1";
    EXPECT_EQ(read("7::BIGINT", "1.5::DOUBLE", extra), (Lines{"7|1" + end, "1.5|2" + end}));
    EXPECT_EQ(read("NULL::BIGINT", "1.5::DOUBLE", extra), (Lines{".|1" + end, "1.5|2" + end}));
    EXPECT_EQ(read("16777217::INTEGER", "1.5::FLOAT", extra),
              (Lines{"16777217|1" + end, "1.5|2" + end}));
    EXPECT_EQ(read("7::INTEGER", "9007199254740992::BIGINT", extra),
              (Lines{"7|1" + end, "9007199254740992|2" + end}));
    EXPECT_EQ(read("0.10::DECIMAL(4,2)", "0.125::DECIMAL(4,3)", extra),
              (Lines{"0.1|1" + end, "0.125|2" + end}));
    const Lines failed = read("9007199254740993::BIGINT", "1.5::DOUBLE", extra);
    EXPECT_TRUE(has(failed.back(), "a.parquet: x: 9007199254740993 cannot be held exactly"))
        << failed.back();
    for (const auto& [a, b] :
         {std::pair{"7", "'07'"}, std::pair{"true", "1"}, std::pair{"0.1::FLOAT", "0.1"},
          std::pair{"DATE '2024-01-01'", "TIMESTAMPTZ '2024-01-01 10:00:00+02'"}}) {
      EXPECT_THROW(read(a, b, extra), DataError) << a;
      EXPECT_TRUE(has(refusal(folder.path("p")), "b.parquet: its column x is of another type"));
    }
  }
}

TEST(DataFiles, RefusalsNameTheFileOfTheFolder) {
  const DataFolder folder;
  for (const size_t limit : {size_t{1} << 30U, size_t{0}}) {  // in memory, and not
    for (const auto& [name, first, second] :
         {std::tuple{"j", "{\"x\":1}\n", "{\"x\":1}\n\n{\"x\":\"no\"}\n"},
          std::tuple{"c", "x\n1\n", "x\n1\nno\n"}}) {
      const std::string ending = *name == 'j' ? ".jsonl" : ".csv";
      put(folder, std::string(name) + "/1" + ending, first);
      put(folder, std::string(name) + "/2" + ending, second);
      put(folder, std::string(name) + "/3" + ending, first);
      DataOptions options = dataOptions(folder.path(name));
      options.memoryLimit = limit;
      options.schema = folder.write("s.json", R"({"fields":[{"name":"x","type":"integer"}]})");
      EXPECT_TRUE(has(refusal(options), "2" + ending + ", line 3")) << refusal(options);
    }
  }
}

TEST(DataFiles, ADictionaryLiesBesideTheFolder) {
  const DataFolder folder;
  put(folder, "d/a.csv", "x\n1\n");
  folder.write("d.schema.json",
               R"({"fields":[{"name":"x","title":"The x"},{"name":"gone","title":"Not here"}]})");
  DataOptions options = dataOptions(folder.path("d"));
  EXPECT_EQ(openDataset(options)->declaration(0).label, "The x")
      << "as far as its fields are there";
  for (const char* name : {"d/", "d/.", "d/../d", "d/./"}) {
    options.data = folder.path(name);
    EXPECT_EQ(openDataset(options)->declaration(0).label, "The x") << name;
  }
  put(folder, "d/inner/b.csv", "x\n2\n");
  options.data = folder.path("d/inner/..");
  EXPECT_EQ(openDataset(options)->declaration(0).label, "The x");
  options.schema = "none";
  EXPECT_EQ(openDataset(options)->declaration(0).label, "");
  options.schema = folder.path("d.schema.json");
  EXPECT_TRUE(has(refusal(options), "/fields/1/name: the data have no variable 'gone'"));
}

}  // namespace
}  // namespace workbench
