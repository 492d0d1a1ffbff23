#include <gtest/gtest.h>

#include <map>
#include <random>

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
  EXPECT_EQ(table.codeOf("x       ", 1, [] { return DelimitedPlace(); }), 1U);
  EXPECT_EQ(table.codeOf(field.data(), 3, [] { return DelimitedPlace{4, 11}; }), 2U);
  EXPECT_EQ(table.place(2).line, 11U);
}

// As many as a file may have columns, and there is one for each of them and each thread.
TEST(SpellingTable, TakesLittleMemoryForFewFields) {
  SpellingTable table;
  for (const char* field : {"0       ", "1       ", "9       "}) {
    table.codeOf(field, 1, [] { return DelimitedPlace(); });
  }
  EXPECT_LT(table.memory(), 1024U);
}

}  // namespace
}  // namespace workbench
