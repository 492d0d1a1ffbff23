#include "workbench/dataset/case_collector.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace workbench {
namespace {

constexpr size_t kPlenty = size_t{1} << 30U;
using Case = std::pair<double, std::string>;

/// How often each case is among the rows.
std::map<Case, double> tally(const CodedCases& cases) {
  std::map<Case, double> counts;
  for (size_t row = 0; row < cases.rows; ++row) {
    const double count = row < cases.counts.size() ? cases.counts[row] : 1.0;
    counts[{cases.columns[0].number(row), std::string(cases.columns[1].text(row))}] += count;
  }
  return counts;
}

/// Blocks of `number(i)` and `text(i)`.
template <class Number, class Text>
CodedCases collect(CollapseMode mode, size_t limit, size_t blocks, Number number, Text text) {
  constexpr size_t kBlock = 1000;
  CaseCollector collector({ValueKind::kNumber, ValueKind::kString}, mode, limit);
  bool fits = true;
  for (size_t block = 0; block < blocks; ++block) {
    std::vector<double> numbers;
    std::vector<std::string> texts;
    for (size_t i = block * kBlock; i < (block + 1) * kBlock; ++i) {
      numbers.push_back(number(i));
      texts.push_back(text(i));
    }
    const std::vector<std::string_view> views(texts.begin(), texts.end());
    if (fits) collector.addNumbers(0, numbers.data(), kBlock);
    if (fits) collector.addTexts(1, views.data(), kBlock);
    fits = collector.endBlock(kBlock);
  }
  return collector.finish();
}

double fewNumbers(size_t i) {
  constexpr std::array<double, 5> kNumbers = {kSystemMissing, 0, 1, 2.5, -7};
  return kNumbers[i * 31 % 5];
}
std::string fewTexts(size_t i) { return i % 3 == 0 ? "" : "region" + std::to_string(i % 3); }

TEST(CaseCollector, CountsEqualCasesAndKeepsNone) {
  const CodedCases counted = collect(CollapseMode::kAlways, kPlenty, 30, fewNumbers, fewTexts);
  EXPECT_EQ(counted.cases, 30'000);
  EXPECT_EQ(counted.rows, 15U);
  EXPECT_EQ(counted.counts, std::vector<double>(15, 2000.0));
}

TEST(CaseCollector, KeepsCasesInTheirOrder) {
  const CodedCases kept = collect(CollapseMode::kNever, kPlenty, 30, fewNumbers, fewTexts);
  EXPECT_TRUE(kept.counts.empty());
  ASSERT_EQ(kept.rows, 30'000U);
  for (size_t row = 0; row < kept.rows; ++row) {
    ASSERT_EQ(kept.columns[0].number(row), fewNumbers(row)) << row;
    ASSERT_EQ(kept.columns[1].text(row), fewTexts(row)) << row;
  }
}

TEST(CaseCollector, EveryWayHoldsTheSameCases) {
  const auto numbers = [](size_t i) { return static_cast<double>(i * i % 30'011) / 4; };
  const auto always = tally(collect(CollapseMode::kAlways, kPlenty, 90, numbers, fewTexts));
  EXPECT_EQ(tally(collect(CollapseMode::kNever, kPlenty, 90, numbers, fewTexts)), always);
  EXPECT_EQ(tally(collect(CollapseMode::kAuto, kPlenty, 90, numbers, fewTexts)), always);
}

TEST(CaseCollector, StopsCountingWhenCasesHardlyRepeatAndKeepsWhatItCounted) {
  const auto numbers = [](size_t i) { return i < 50'000 ? fewNumbers(i) : static_cast<double>(i); };
  const CodedCases cases = collect(CollapseMode::kAuto, kPlenty, 200, numbers, fewTexts);
  EXPECT_EQ(cases.cases, 200'000);
  EXPECT_GT(cases.counts.size(), 15U);
  EXPECT_GT(cases.rows, cases.counts.size());
  EXPECT_LT(cases.rows, 160'000U);
  EXPECT_EQ(tally(cases), tally(collect(CollapseMode::kNever, kPlenty, 200, numbers, fewTexts)));
  // The last rows are the last cases.
  for (size_t back = 1; back <= 1000; ++back) {
    ASSERT_EQ(cases.columns[0].number(cases.rows - back), numbers(200'000 - back));
  }
}

TEST(CaseCollector, NumbersThatHardlyRepeatHaveNoCodes) {
  const auto numbers = [](size_t i) { return static_cast<double>(i); };
  const CodedCases cases = collect(CollapseMode::kNever, kPlenty, 100, numbers, fewTexts);
  EXPECT_FALSE(cases.columns[0].coded);
  EXPECT_TRUE(cases.columns[1].coded);
  for (size_t row = 0; row < cases.rows; ++row) {
    ASSERT_EQ(cases.columns[0].number(row), numbers(row));
  }
}

TEST(CaseCollector, DropsCasesBeyondTheLimitAndGoesOnCountingThem) {
  const auto numbers = [](size_t i) { return static_cast<double>(i); };
  for (const CollapseMode mode :
       {CollapseMode::kAuto, CollapseMode::kAlways, CollapseMode::kNever}) {
    const CodedCases cases = collect(mode, 100'000, 20, numbers, fewTexts);
    EXPECT_FALSE(cases.complete);
    EXPECT_EQ(cases.rows, 0U);
    EXPECT_EQ(cases.cases, 20'000);
    EXPECT_EQ(cases.columns[1].kind, ValueKind::kString);
  }
}

TEST(CaseCollector, WhatTheCallerHoldsCountsToo) {
  const std::array<uint32_t, 3> codes = {0, 1, 0};
  CaseCollector collector({ValueKind::kNumber}, CollapseMode::kAuto, 1'000'000);
  collector.addCodes(0, codes.data(), codes.size());
  EXPECT_TRUE(collector.endBlock(codes.size(), 100'000));
  collector.addCodes(0, codes.data(), codes.size());
  EXPECT_FALSE(collector.endBlock(codes.size(), 1'000'000));
}

/// Bytes, numbers and codes stand for the same values, in one column, too.
TEST(CaseCollector, TakesBytesAsTheNumbersThatTheyAre) {
  const std::array<uint8_t, 4> bytes = {3, 200, 0, 3};
  const std::array<double, 4> numbers = {3, kSystemMissing, 0.5, 128};
  for (const CollapseMode mode : {CollapseMode::kAlways, CollapseMode::kNever}) {
    CaseCollector collector({ValueKind::kNumber}, mode, kPlenty);
    collector.addBytes(0, bytes.data(), 200, bytes.size());
    collector.endBlock(bytes.size());
    collector.addNumbers(0, numbers.data(), numbers.size());
    collector.endBlock(numbers.size());
    const CodedCases cases = collector.finish();
    std::map<double, double> counts;
    for (size_t row = 0; row < cases.rows; ++row) {
      counts[cases.columns[0].number(row)] += cases.counts.empty() ? 1.0 : cases.counts[row];
    }
    EXPECT_EQ(counts,
              (std::map<double, double>{{kSystemMissing, 2}, {0, 1}, {0.5, 1}, {3, 3}, {128, 1}}));
  }
}

TEST(CaseCollector, TakesBytesOfAColumnWithoutCodes) {
  std::vector<double> numbers(100'000);
  for (size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<double>(i) + 0.5;
  CaseCollector collector({ValueKind::kNumber}, CollapseMode::kNever, kPlenty);
  collector.addNumbers(0, numbers.data(), numbers.size());
  collector.endBlock(numbers.size());
  const std::array<uint8_t, 2> bytes = {200, 7};
  collector.addBytes(0, bytes.data(), 200, bytes.size());
  collector.endBlock(bytes.size());
  const CodedCases cases = collector.finish();
  EXPECT_FALSE(cases.columns[0].coded);
  ASSERT_EQ(cases.rows, 100'002U);
  EXPECT_EQ(cases.columns[0].number(100'000), kSystemMissing);
  EXPECT_EQ(cases.columns[0].number(100'001), 7.0);
}

TEST(CaseCollector, CountsCasesOfNoColumn) {
  CaseCollector collector({}, CollapseMode::kAuto, kPlenty);
  collector.endBlock(5);
  EXPECT_EQ(collector.finish().cases, 5);
}

}  // namespace
}  // namespace workbench
