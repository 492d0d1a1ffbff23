// Folders and patterns as DATA.
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

TEST(DataFiles, ADictionaryLiesBesideTheFolder) {
  const DataFolder folder;
  put(folder, "d/a.csv", "x\n1\n");
  folder.write("d.schema.json",
               R"({"fields":[{"name":"x","title":"The x"},{"name":"gone","title":"Not here"}]})");
  DataOptions options = dataOptions(folder.path("d"));
  EXPECT_EQ(openDataset(options)->declaration(0).label, "The x")
      << "as far as its fields are there";
  options.schema = "none";
  EXPECT_EQ(openDataset(options)->declaration(0).label, "");
  options.schema = folder.path("d.schema.json");
  EXPECT_TRUE(has(refusal(options), "/fields/1/name: the data have no variable 'gone'"));
}

}  // namespace
}  // namespace workbench
