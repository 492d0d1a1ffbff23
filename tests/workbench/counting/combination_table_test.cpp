#include "workbench/counting/combination_table.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

namespace workbench {
namespace {

using Codes = std::vector<uint32_t>;

std::map<Codes, int64_t> countsOf(const CombinationTable& table, size_t columns) {
  std::map<Codes, int64_t> counts;
  table.forEach([&](const uint64_t* words, int64_t count) {
    Codes codes;
    for (size_t i = 0; i < columns; ++i) codes.push_back(table.codeIn(words, i));
    counts[codes] += count;
  });
  return counts;
}

TEST(CombinationTable, CountsWhileTheCodesGrow) {
  constexpr size_t kColumns = 7;
  CombinationTable table(kColumns);
  std::map<Codes, int64_t> expected;
  std::vector<size_t> different(kColumns, 1);
  std::mt19937 random(6);
  for (int block = 0; block < 40; ++block) {
    constexpr size_t kRecords = 500;
    std::vector<Codes> columns(kColumns, Codes(kRecords));
    for (size_t column = 0; column < kColumns; ++column) {
      const uint32_t most = column == 3 ? 1U << (block / 2) : 1 + block % (column + 2);
      different[column] = std::max<size_t>(different[column], most);
      for (uint32_t& code : columns[column]) code = random() % most;
    }
    table.fit(different);
    std::vector<uint64_t> words(kRecords * table.words());
    for (size_t column = 0; column < kColumns; ++column) {
      table.pack(column, columns[column].data(), kRecords, words.data());
    }
    table.addAll(words.data(), kRecords);
    for (size_t i = 0; i < kRecords; ++i) {
      Codes codes;
      for (const Codes& column : columns) codes.push_back(column[i]);
      ++expected[codes];
    }
  }
  EXPECT_EQ(table.size(), expected.size());
  EXPECT_TRUE(countsOf(table, kColumns) == expected);
}

TEST(CombinationTable, EstimatesHowManyCombinationsThereAre) {
  CombinationTable table(1);
  table.fit({16});
  for (const auto& [code, count] :
       std::map<uint32_t, int64_t>{{1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 2}, {6, 2}, {7, 9}}) {
    uint64_t combination = 0;
    table.pack(0, &code, 1, &combination);
    table.add(&combination, count);
  }
  // Seven, and 4 x 3 / (2 x 3) more.
  EXPECT_DOUBLE_EQ(table.estimatedSize(), 9.0);
}

TEST(CombinationTable, TakesMoreColumnsThanAWordHolds) {
  constexpr size_t kColumns = 150;
  CombinationTable table(kColumns);
  EXPECT_EQ(table.words(), 3U);
  table.fit(std::vector<size_t>(kColumns, 3));
  EXPECT_EQ(table.words(), 5U);
  std::vector<uint64_t> words(2 * table.words());
  const Codes codes{2, 1};
  for (size_t column = 0; column < kColumns; ++column) {
    table.pack(column, codes.data(), 2, words.data());
  }
  table.addAll(words.data(), 2);
  table.add(words.data(), 4);
  EXPECT_EQ(countsOf(table, kColumns),
            (std::map<Codes, int64_t>{{Codes(kColumns, 1), 1}, {Codes(kColumns, 2), 5}}));
}

}  // namespace
}  // namespace workbench
