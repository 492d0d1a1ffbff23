#include <gtest/gtest.h>

#include <chrono>

#include "tests/workbench/dataset/data_folder.h"
#include "workbench/text/collation.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using testing::dataOptions;
using Lines = std::vector<std::string>;

class SplitGroups : public ::testing::TestWithParam<size_t> {
 protected:
  DataOptions options(const std::string& path, std::vector<std::string> split) const {
    DataOptions options = dataOptions(path);
    options.split = std::move(split);
    options.collapse = CollapseMode::kNever;
    options.memoryLimit = GetParam();
    return options;
  }
  DataFolder folder_;
};

TEST_P(SplitGroups, ComeInAscendingOrderMissingFirst) {
  const std::string path =
      folder_.write("a.csv", "x,g\n1,10\n2,\n3,-5\n4,9\n5,10\n6,nan\n7,-inf\n8,-0\n9,0\n");
  EXPECT_EQ(casesOf(options(path, {"g"})),
            (Lines{"2|.|1", "6|.|1", "end of .", "7|-Infinity|1", "end of -Infinity", "3|-5|1",
                   "end of -5", "8|0|1", "9|0|1", "end of 0", "4|9|1", "end of 9", "1|10|1",
                   "5|10|1", "end of 10"}));
}

TEST_P(SplitGroups, UserMissingValuesAreGroups) {
  const std::string path = folder_.write("a.csv", "x,g\n1,9\n2,1\n3,9\n");
  folder_.write("a.schema.json", R"({"fields":[{"name":"g","missingValues":["9"]}]})");
  EXPECT_EQ(casesOf(options(path, {"g"})),
            (Lines{"2|1|1", "end of 1", "1|9|1", "3|9|1", "end of 9"}));
}

TEST_P(SplitGroups, TrailingBlanksMakeNoGroup) {
  const std::string path = folder_.write("a.csv", "x,g\n1,b\n2,\n3,\"b  \"\n4,\" b\"\n5,\" \"\n");
  const Lines lines = casesOf(options(path, {"g"}));
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) { return line.rfind("end of", 0) == 0; }),
            3);
  EXPECT_EQ(lines[0], "2|  |1");
  EXPECT_EQ(lines[1], "5|  |1");
  EXPECT_EQ(lines[2], "end of ");
}

TEST_P(SplitGroups, StringsFollowTheLocaleThenTheirBytes) {
  std::string text = "x,g,h\n";
  const Lines values{"b", "a", "B", "A", "\xC3\xA4", "a b", "", "ab", "10", "9"};
  for (size_t i = 0; i < 40; ++i) {
    text += std::to_string(i) + "," + values[i * 7 % values.size()] + "," + std::to_string(i % 2) +
            "\n";
  }
  Lines groups;
  for (const std::string& line : casesOf(options(folder_.write("a.csv", text), {"h", "g"}))) {
    if (line.rfind("end of ", 0) == 0) groups.push_back(line.substr(7));
  }
  ASSERT_GE(groups.size(), values.size());
  for (size_t i = 1; i < groups.size(); ++i) {
    if (groups[i][0] != groups[i - 1][0]) {
      EXPECT_LT(groups[i - 1][0], groups[i][0]);
    } else {
      EXPECT_LT(compareStrings(groups[i - 1].substr(2), groups[i].substr(2)), 0);
    }
  }
}

TEST_P(SplitGroups, ManySmallOnesTakeTheirTimeOnly) {
  constexpr int kGroups = 100000;
  std::string text = "x,g\n";
  for (int i = 0; i < kGroups * 10; ++i) {
    text += std::to_string(i) + "," + std::to_string(i % kGroups) + "\n";
  }
  const auto data = openDataset(options(folder_.write("a.csv", text), {"g"}));
  data->beginCommand({0});
  ProcDSIterator iterator(data->openFeed());
  double expectedGroup = 0;
  int64_t cases = 0;
  const auto start = std::chrono::steady_clock::now();
  while (const Case* each = iterator.NextCase()) {
    if (!iterator.SplitGroupEnd()) {
      ASSERT_EQ(std::fmod(*each->Obs(0), kGroups), expectedGroup);
      ++cases;
      continue;
    }
    ASSERT_EQ(std::get<double>(data->currentSplit()[0]), expectedGroup);
    ++expectedGroup;
  }
  EXPECT_EQ(cases, kGroups * 10);
  EXPECT_EQ(expectedGroup, kGroups);
  // A query per group would take minutes.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_P(SplitGroups, BothPassesAreAlike) {
  std::string text = "x,g\n";
  for (int i = 0; i < 50000; ++i) {
    text += std::to_string(i) + ",g" + std::to_string(i * 7919 % 40) + "\n";
  }
  const auto data = openDataset(options(folder_.write("a.csv", text), {"g"}));
  data->beginCommand({0});
  const Lines first = casesOf(*data, {0});
  EXPECT_EQ(first.size(), 50040U);
  EXPECT_EQ(casesOf(*data, {0}), first);
}

INSTANTIATE_TEST_SUITE_P(InMemoryAndInTheEngine, SplitGroups,
                         ::testing::Values(size_t{200} << 20, size_t{0}));

}  // namespace
}  // namespace workbench
