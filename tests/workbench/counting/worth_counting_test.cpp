#include "workbench/counting/worth_counting.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

namespace workbench {
namespace {

constexpr size_t kBlock = 4096;

/// Counts cases block by block while it pays; the case of number i is the combination codeOf(i).
template <class CodeOf>
size_t casesCounted(size_t cases, CodeOf codeOf) {
  CombinationTable table(1);
  table.fit({size_t{1} << 31U});
  WorthCounting worthCounting;
  std::vector<uint32_t> codes(kBlock);
  for (size_t done = 0; done < cases; done += kBlock) {
    for (size_t i = 0; i < kBlock; ++i) codes[i] = codeOf(static_cast<uint32_t>(done + i));
    std::vector<uint64_t> words(kBlock);
    table.pack(0, codes.data(), kBlock, words.data());
    table.addAll(words.data(), kBlock);
    if (!worthCounting.stillPays(table, kBlock)) return done + kBlock;
  }
  return cases;
}

/// Draws from 0 to most - 1.
class Draw {
 public:
  explicit Draw(uint32_t most) : most_(most) {}
  uint32_t operator()(uint32_t) { return static_cast<uint32_t>(random_() % most_); }

 private:
  std::mt19937 random_{7};
  uint32_t most_;
};

TEST(WorthCounting, GoesOnWithFewCombinationsThatAreMostlyNewAtFirst) {
  EXPECT_EQ(casesCounted(1U << 18U, Draw(50'000)), 1U << 18U);
}

TEST(WorthCounting, StopsWhenMostOfManyCombinationsAreNew) {
  const size_t counted = casesCounted(1U << 20U, Draw(400'000));
  EXPECT_GE(counted, 65'536U);
  EXPECT_LE(counted, 65'536U + 4 * kBlock);
}

TEST(WorthCounting, StopsAtOnceWhenNothingRepeats) {
  EXPECT_EQ(casesCounted(1U << 20U, [](uint32_t i) { return i; }), 2 * kBlock);
}

TEST(WorthCounting, GoesOnWithManyCombinationsThatRepeat) {
  EXPECT_EQ(casesCounted(1U << 21U, [](uint32_t i) { return i / 8; }), 1U << 21U);
}

TEST(WorthCounting, StopsBeforeTheTableIsTooLarge) {
  EXPECT_LE(casesCounted(1U << 24U, [](uint32_t i) { return i / 8; }), (1U << 23U) + 4 * kBlock);
}

TEST(WorthCounting, JudgesByTheLatestCases) {
  // Repeats at first, then nothing but new ones.
  constexpr uint32_t kRepeating = 1U << 20U;
  const auto codeOf = [](uint32_t i) { return i < kRepeating ? i / 8 : i; };
  EXPECT_LE(casesCounted(1U << 22U, codeOf), kRepeating + 4 * kBlock);
  EXPECT_GE(casesCounted(1U << 22U, codeOf), kRepeating);
}

TEST(WorthCounting, WaitsForEnoughCasesToJudgeBy) {
  CombinationTable table(1);
  table.fit({size_t{1} << 31U});
  for (uint64_t code = 0; code < 100'000; ++code) {
    const uint64_t combination = code << 33U;
    table.add(&combination, 1);
  }
  WorthCounting worthCounting;
  EXPECT_TRUE(worthCounting.stillPays(table, 1));
  EXPECT_FALSE(worthCounting.stillPays(table, 8'192));
}

}  // namespace
}  // namespace workbench
