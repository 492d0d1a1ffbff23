// Identical cases counted by the engine, or handed over one by one: the same content.
#include <gtest/gtest.h>

#include <random>

#include "tests/workbench/dataset/data_folder.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::contentOf;
using testing::DataFolder;
using testing::dataOptions;
using Lines = std::vector<std::string>;

Lines sorted(Lines lines) {
  std::sort(lines.begin(), lines.end());
  return lines;
}

TEST(Collapse, HandsEachCombinationOverOnce) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write("a.csv", "a,s\n1,x\n0,x\n1,x\n1,\n1,x\n,y\n,y\n"));
  options.collapse = CollapseMode::kAlways;
  EXPECT_EQ(sorted(casesOf(options)), (Lines{".|y|2", "0|x|1", "1| |1", "1|x|3"}));
  const auto data = openDataset(options);
  casesOf(*data);
  EXPECT_EQ(data->caseCount(), 7);
}

TEST(Collapse, WeightsAreRoundedCaseByCase) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write(
      "a.csv", "a,w\n1,0.5\n1,0.49\n1,2.5\n1,1.49\n1,-3\n1,\n1,nan\n1,9\n1,2.5\n0,0.2\n"));
  folder.write("a.schema.json", R"({"fields":[{"name":"w","missingValues":["","9"]}]})");
  options.weight = "w";
  options.collapse = CollapseMode::kAlways;
  // 0.5 and 1.49 count 1 each, 2.5 counts 3, twice; 0.49, -3, missing ones and 9 are dropped.
  EXPECT_EQ(sorted(casesOf(options)),
            (Lines{"0|.", "1|.", "1|.", "1|.", "1|.", "1|1", "1|1", "1|6"}));
}

TEST(Collapse, SumsThatWouldBeRoundedAreNotMade) {
  const DataFolder folder;
  DataOptions options =
      dataOptions(folder.write("a.csv", "a,w\n1,4503599627370496\n1,4503599627370496\n1,1\n"));
  options.weight = "w";
  options.collapse = CollapseMode::kAlways;
  EXPECT_EQ(casesOf(options), (Lines{"1|4503599627370496", "1|4503599627370496", "1|1"}));
  DataOptions infinite = dataOptions(folder.write("b.csv", "a,w\n1,inf\n1,1\n"));
  infinite.weight = "w";
  infinite.collapse = CollapseMode::kAlways;
  EXPECT_EQ(casesOf(infinite), (Lines{"1|Infinity", "1|1"}));
}

TEST(Collapse, GroupsOfDroppedCasesStay) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write("a.csv", "a,g,w\n1,1,1\n1,2,0\n1,2,\n1,3,2\n"));
  options.weight = "w";
  options.split = {"g"};
  options.collapse = CollapseMode::kAlways;
  EXPECT_EQ(casesOf(options),
            (Lines{"1|1|1", "end of 1", "1|2|.", "1|2|.", "end of 2", "1|3|2", "end of 3"}));
}

/// A file whose columns have missing values of all sorts, blanks, signs of zero, and few values.
std::string mixedData(const DataFolder& folder, int rows, const std::string& name) {
  std::mt19937 random(rows);
  const auto pick = [&random](std::initializer_list<const char*> values) {
    return std::data(values)[random() % values.size()];
  };
  std::string text = "a,s,g,h,w,d\n";
  for (int i = 0; i < rows; ++i) {
    text += pick({"0", "1", "-0", "", "nan", "2.5", "9"}) + std::string(",");
    text += pick({"x", "x ", " x", "", "longer than a word", "NA", "\xC3\xA9"}) + std::string(",");
    text += pick({"", "3", "-1", "10", "9"}) + std::string(",");
    text += pick({"b", "B", "", "a", "\xC3\xA4", "a b"}) + std::string(",");
    text +=
        pick({"1", "0.5", "0.49999999999999994", "2.5", "", "-1", "9", "1e3"}) + std::string(",");
    text += pick({"2026-01-31", "", "1969-12-31"}) + std::string("\n");
  }
  folder.write(
      name + ".schema.json",
      R"({"fields":[{"name":"a","missingValues":["","9"]},{"name":"g","missingValues":["9"]},
                   {"name":"s","missingValues":["NA"]},{"name":"w","missingValues":["","9"]}]})");
  return folder.write(name + ".csv", text);
}

class EveryWayOfReading
    : public ::testing::TestWithParam<std::tuple<bool, std::vector<std::string>>> {};

TEST_P(EveryWayOfReading, GivesTheSameContent) {
  const DataFolder folder;
  DataOptions options = dataOptions(mixedData(folder, 5000, "mixed"));
  if (std::get<0>(GetParam())) options.weight = "w";
  options.split = std::get<1>(GetParam());
  options.collapse = CollapseMode::kNever;
  const auto inMemory = contentOf(options);
  ASSERT_GT(inMemory.size(), 20U);
  options.collapse = CollapseMode::kAlways;
  EXPECT_EQ(contentOf(options), inMemory);
  options.collapse = CollapseMode::kNever;
  options.memoryLimit = 0;
  EXPECT_EQ(contentOf(options), inMemory);
}

TEST_P(EveryWayOfReading, KeepsTheOrderOfTheFile) {
  const DataFolder folder;
  DataOptions options = dataOptions(mixedData(folder, 5000, "mixed"));
  if (std::get<0>(GetParam())) options.weight = "w";
  options.split = std::get<1>(GetParam());
  options.collapse = CollapseMode::kNever;
  const Lines inMemory = casesOf(options);
  options.memoryLimit = 0;
  EXPECT_EQ(casesOf(options), inMemory);
}

/// Numbers with types of their own: the first reading may end as soon as they do not fit.
TEST(ReadingOfTypedNumbers, KeepsCasesThatDoNotFitIntoMemory) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.make(
      "a.parquet", "COPY (SELECT i, i / 8 AS x FROM range(10000) AS r(i) ORDER BY i) TO FILE"));
  options.collapse = CollapseMode::kNever;
  const Lines inMemory = casesOf(options);
  ASSERT_EQ(inMemory.size(), 10000U);
  options.memoryLimit = size_t{1} << 14;
  EXPECT_EQ(casesOf(options), inMemory);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, EveryWayOfReading,
    ::testing::Combine(::testing::Bool(),
                       ::testing::Values(std::vector<std::string>{}, std::vector<std::string>{"g"},
                                         std::vector<std::string>{"h"},
                                         std::vector<std::string>{"h", "g"},
                                         std::vector<std::string>{"d", "h", "a"})));

TEST(Collapse, IsChosenWhenCombinationsRepeat) {
  const DataFolder folder;
  std::string few = "a,b,c\n";
  std::string many = "a,b,c\n";
  for (int i = 0; i < 200000; ++i) {
    few += std::to_string(i % 2) + "," + std::to_string(i % 3) + ",0\n";
    many += std::to_string(i) + ",0,0\n";
  }
  DataOptions options = dataOptions(folder.write("few.csv", few));
  options.collapse = CollapseMode::kAuto;
  EXPECT_EQ(casesOf(options).size(), 6U);
  options.data = folder.write("many.csv", many);
  EXPECT_EQ(casesOf(options).size(), 200000U);
}

TEST(Collapse, IsChosenWhenFewCombinationsAreStillToCome) {
  // Thousands of combinations, each of which the first 16,384 cases show a few times.
  const DataFolder folder;
  std::mt19937 random(7);
  std::string text = "a,b\n";
  for (int i = 0; i < 300000; ++i) {
    text += std::to_string(random() % 256) + "," + std::to_string(random() % 12) + "\n";
  }
  DataOptions options = dataOptions(folder.write("a.csv", text));
  options.collapse = CollapseMode::kAuto;
  EXPECT_EQ(casesOf(options).size(), 3072U);
}

TEST(Collapse, HandsOverTheRestWhenRepetitionEnds) {
  const DataFolder folder;
  std::string text = "a,b\n";
  for (int i = 0; i < 150000; ++i) text += "1,0\n";
  for (int i = 0; i < 150000; ++i) text += std::to_string(i) + ".5,\n";
  DataOptions options = dataOptions(folder.write("a.csv", text));
  options.collapse = CollapseMode::kAuto;
  options.memoryLimit = size_t{1} << 20;  // less than the combinations take
  const auto content = contentOf(options);
  EXPECT_EQ(content.size(), 150001U);
  EXPECT_EQ(content.at("all 1|0"), 150000);
}

}  // namespace
}  // namespace workbench
