#include "tests/memory/memory_dataset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/workbench/dataset/data_folder.h"
#include "workbench/text/collation.h"

namespace workbench {
namespace {

using testing::casesOf;
using Lines = std::vector<std::string>;

TEST(MemoryDataset, HandsOverNormalValues) {
  MemoryDataset data;
  data.addNumbers("n", {1, std::nan(""), -0.0});
  data.addStrings("s", {"a  ", "", " bc"});
  EXPECT_EQ(casesOf(data, {0, 1}), (Lines{"1|a  |1", ".|   |1", "0| bc|1"}));
  EXPECT_EQ(data.variable(1).width, 3);
  EXPECT_EQ(data.caseCount(), 3);
  EXPECT_EQ(casesOf(data, {0, 1}).size(), 3U) << "a second pass sees the same";
}

TEST(MemoryDataset, EmptyDataHaveNoMarker) {
  MemoryDataset data;
  data.addNumbers("n", {});
  data.addNumbers("g", {});
  data.setSplit({1});
  EXPECT_EQ(casesOf(data, {0}), Lines{});
  ProcDSIterator iterator(data.openFeed());
  EXPECT_EQ(iterator.NextCase(), nullptr);
  EXPECT_EQ(iterator.NextCase(), nullptr);
}

TEST(MemoryDataset, OrdersSplitGroupsAndKeepsTheOrderInside) {
  MemoryDataset data;
  data.addNumbers("n", {1, 2, 3, 4, 5, 6});
  data.addNumbers("g", {2, std::nan(""), -HUGE_VAL, 2, 10, std::nan("")});
  data.setSplit({1});
  for (const int64_t size : {1, 2, 3, 100}) {
    data.setChunkSize(size);
    EXPECT_EQ(casesOf(data, {0}), (Lines{"2|1", "6|1", "end of .", "3|1", "end of -Infinity", "1|1",
                                         "4|1", "end of 2", "5|1", "end of 10"}));
  }
}

TEST(MemoryDataset, OrdersStringsByLocaleThenBytes) {
  MemoryDataset data;
  data.addStrings("g", {"b", "a", "", "B", "\xC3\xA4", "A", "a"});
  data.setSplit({0});
  std::vector<std::string> groups;
  for (const std::string& line : casesOf(data, {})) {
    if (line != "1") groups.push_back(line.substr(7));
  }
  ASSERT_EQ(groups.size(), 6U);
  EXPECT_EQ(groups.front(), "");
  for (size_t i = 1; i < groups.size(); ++i) {
    EXPECT_LT(compareStrings(groups[i - 1], groups[i]), 0) << groups[i - 1] << " " << groups[i];
  }
}

TEST(MemoryDataset, DeliversWeightsRaw) {
  MemoryDataset data;
  Variable weight;
  weight.name = "w";
  weight.missingNumbers = {9};
  data.addNumbers("n", {1, 2, 3, 4, 5});
  data.addNumbers(weight, {0.4, -1, std::nan(""), 9, 2.5});
  data.setWeight(1);
  EXPECT_EQ(casesOf(data, {0}), (Lines{"1|0.4", "2|-1", "3|.", "4|.", "5|2.5"}));
}

TEST(MemoryDataset, AStringWeightDropsAll) {
  MemoryDataset data;
  data.addStrings("w", {"1", "x"});
  data.setWeight(0);
  EXPECT_EQ(casesOf(data, {}), (Lines{".", "."}));
}

TEST(MemoryDataset, FailsWhenToldTo) {
  MemoryDataset data;
  data.addNumbers("n", {1, 2, 3});
  data.setChunkSize(1);
  data.failAfter(2, "torn");
  EXPECT_EQ(casesOf(data, {0}), (Lines{"1|1", "2|1", "failed: torn"}));
  EXPECT_EQ(data.openFeed(), nullptr);
}

TEST(MemoryDataset, RefusesColumnsOfUnequalLength) {
  MemoryDataset data;
  data.addNumbers("a", {1, 2});
  EXPECT_THROW(data.addNumbers("b", {1}), std::invalid_argument);
}

TEST(MemoryDataset, FindsNamesWhateverTheirCase) {
  MemoryDataset data;
  data.addNumbers("Straße", {});
  data.addNumbers("x", {});
  data.addNumbers("X", {});
  EXPECT_EQ(data.find("STRASSE"), 0);
  EXPECT_EQ(data.find("X"), 2);
  EXPECT_EQ(data.find("x"), 1);
  EXPECT_LT(data.find("y"), 0);
}

}  // namespace
}  // namespace workbench
