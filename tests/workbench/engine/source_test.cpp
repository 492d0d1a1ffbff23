#include "workbench/engine/source.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/workbench/dataset/data_folder.h"
#include "workbench/engine/read_problem.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using Lines = std::vector<std::string>;

TEST(DictionaryBeside, DropsTheEndings) {
  EXPECT_EQ(dictionaryBeside("d/a.csv"), "d/a.schema.json");
  EXPECT_EQ(dictionaryBeside("d/a.b.csv.gz"), "d/a.b.schema.json");
  EXPECT_EQ(dictionaryBeside("a.parquet"), "a.schema.json");
  EXPECT_EQ(dictionaryBeside("-"), "");
  EXPECT_EQ(dictionaryBeside("duckdb:a.db"), "");
}

TEST(Essence, IsTheFirstLineWithoutItsKind) {
  EXPECT_EQ(essence("Binder Error: no column\n\nLINE 1: x"), "no column");
  EXPECT_EQ(essence("plain"), "plain");
}

TEST(Source, ReadsStandardInputOnce) {
  const DataFolder folder;
  const int before = dup(STDIN_FILENO);
  const int file = open(folder.write("in", "a,b\n1,x\n2,y\n").c_str(), O_RDONLY);
  dup2(file, STDIN_FILENO);
  const auto data = openDataset(testing::dataOptions("-"));
  dup2(before, STDIN_FILENO);
  close(file);
  close(before);
  EXPECT_EQ(casesOf(*data), (Lines{"1|x|1", "2|y|1"}));
  EXPECT_EQ(casesOf(*data), (Lines{"1|x|1", "2|y|1"}));
}

TEST(Source, SpillsToTheWorkingFolderAlthoughConfined) {
  const DataFolder folder;
  DataOptions options = testing::dataOptions(folder.write("a.csv", "a\n1\n"));
  // More than the engine may keep in memory.
  options.query =
      "SELECT hash(range) % 1000000 AS h, repeat('x', 1000) || range AS s FROM range(800000) ORDER "
      "BY h";
  options.memoryLimit = 0;
  const auto data = openDataset(options);
  data->beginCommand({0, 1});
  EXPECT_EQ(data->variable(1).width, 1006);
  ProcDSIterator iterator(data->openFeed());
  int64_t count = 0;
  double last = -1;
  while (const Case* each = iterator.NextCase()) {
    ASSERT_LE(last, *each->Obs(0));
    last = *each->Obs(0);
    ++count;
  }
  EXPECT_EQ(data->failure(), "");
  EXPECT_EQ(count, 800000);
}

}  // namespace
}  // namespace workbench
