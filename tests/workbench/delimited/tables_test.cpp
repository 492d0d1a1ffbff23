/// The hash tables of fields and of combinations.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "workbench/delimited/combination_table.h"
#include "workbench/delimited/spelling_table.h"

namespace workbench {
namespace {

TEST(SpellingTable, GivesEveryFieldOneCode) {
  SpellingTable table;
  std::map<std::string, uint32_t> expected{{"", 0}};
  std::mt19937 random(5);
  for (int i = 0; i < 50'000; ++i) {
    std::string field(random() % 20, 'x');
    for (char& c : field) c = static_cast<char>('0' + random() % (i % 2 == 0 ? 2 : 10));
    const auto code = static_cast<uint32_t>(expected.size());
    const uint32_t wanted = expected.emplace(field, code).first->second;
    const std::string padded = field + std::string(8, '7');
    const uint32_t found = table.codeOf(padded.data(), field.size(), [&] {
      return DelimitedPlace{0, static_cast<uint64_t>(i)};
    });
    ASSERT_EQ(found, wanted) << field;
    ASSERT_EQ(table[found], field);
  }
  EXPECT_EQ(table.size(), expected.size());
}

TEST(SpellingTable, AsksForThePlaceOfNewFieldsOnly) {
  SpellingTable table;
  const std::string field = "abc     ";
  EXPECT_EQ(table.codeOf(field.data(), 3, [] { return DelimitedPlace{2, 7}; }), 1U);
  EXPECT_EQ(table.codeOf(field.data(), 3, [] { return DelimitedPlace{3, 9}; }), 1U);
  EXPECT_EQ(table.place(1).part, 2U);
  EXPECT_EQ(table.place(1).line, 7U);
  table.clear();
  EXPECT_EQ(table.size(), 1U);
  EXPECT_EQ(table.codeOf(field.data(), 0, [] { return DelimitedPlace(); }), 0U);
}

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
