#include "workbench/dataset/value_coder.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace workbench {
namespace {

TEST(NumberCoder, GivesEveryNumberOneCodeInTheOrderInWhichTheyCome) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::vector<double> numbers = {
      254,          255, 256, kSystemMissing, 0,        0.5,       -1,    -0.5,
      254.5,        255, 0,   kSystemMissing, infinity, -infinity, 1e300, 2147483648.0,
      4294967296.0, 254, -1,  infinity};
  const std::vector<uint32_t> expected = {0, 1, 2, 3,  4,  5,  6,  7, 8, 1,
                                          4, 3, 9, 10, 11, 12, 13, 0, 6, 9};
  NumberCoder coder;
  std::vector<double> values;
  std::vector<uint32_t> codes(numbers.size());
  coder.code(numbers.data(), numbers.size(), values, codes.data());
  EXPECT_EQ(codes, expected);
  for (size_t i = 0; i < numbers.size(); ++i) {
    EXPECT_EQ(values[codes[i]], numbers[i]);
    EXPECT_EQ(coder.code(numbers[i], values), expected[i]);
  }
}

TEST(NumberCoder, KnowsManyNumbersAgain) {
  NumberCoder coder;
  std::vector<double> values;
  std::map<double, uint32_t> known;
  std::mt19937 random(3);
  for (int i = 0; i < 100'000; ++i) {
    const double value = static_cast<double>(random() % 40'000) / 8 - 1000;
    const auto next = static_cast<uint32_t>(known.size());
    const uint32_t expected = known.emplace(value, next).first->second;
    ASSERT_EQ(coder.code(value, values), expected);
  }
  EXPECT_EQ(values.size(), known.size());
}

TEST(TextCoder, GivesEveryTextOneCodeInTheOrderInWhichTheyCome) {
  TextCoder coder;
  TextList values;
  std::map<std::string, uint32_t> known;
  std::mt19937 random(4);
  for (int i = 0; i < 50'000; ++i) {
    const std::string text(random() % 40, static_cast<char>('a' + random() % 26));
    const auto next = static_cast<uint32_t>(known.size());
    const uint32_t expected = known.emplace(text, next).first->second;
    ASSERT_EQ(coder.code(text, values), expected) << text;
    ASSERT_EQ(values[expected], text);
  }
}

}  // namespace
}  // namespace workbench
