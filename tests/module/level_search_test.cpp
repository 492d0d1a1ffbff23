// Whether a value is among the levels: a long list that was sorted answers as a search from its
// first to its last level does.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "module/model/bin_info_elem.h"

namespace proportions {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

BinInfoElem numbers(std::vector<double> values) {
  BinInfoElem definition;
  definition.numericValues = std::move(values);
  definition.sortValues();
  return definition;
}

BinInfoElem texts(std::vector<std::string> values) {
  BinInfoElem definition;
  definition.stringValues = std::move(values);
  definition.sortValues();
  return definition;
}

/// 0, 7, 14, ... in a shuffled order.
std::vector<double> multiplesOfSeven(size_t count) {
  std::vector<double> values(count);
  for (size_t i = 0; i < count; ++i) values[i * 7919 % count] = 7.0 * static_cast<double>(i);
  return values;
}

TEST(LevelSearch, FindsEveryNumberOfAListOfAnyLengthAndNoOther) {
  for (const size_t count : {0, 1, 2, 15, 16, 17, 18, 1000}) {
    const BinInfoElem definition = numbers(multiplesOfSeven(count));
    for (size_t i = 0; i < count + 2; ++i) {
      const double value = 7.0 * static_cast<double>(i);
      EXPECT_EQ(definition.hasNumber(value), i < count) << value << " of " << count;
      EXPECT_FALSE(definition.hasNumber(value - 0.5)) << value << " of " << count;
    }
  }
}

TEST(LevelSearch, KnowsTheNumbersThatAreNoOrdinaryOnes) {
  for (const size_t ordinary : {2, 40}) {
    std::vector<double> values = multiplesOfSeven(ordinary);
    values.front() = -0.0;
    values.insert(values.begin() + 1, {NAN, kInfinity, kSystemMissing, NAN, 14.0, 14.0});
    const BinInfoElem definition = numbers(values);
    EXPECT_TRUE(definition.hasNumber(0.0));
    EXPECT_TRUE(definition.hasNumber(-0.0));
    EXPECT_TRUE(definition.hasNumber(kInfinity));
    EXPECT_TRUE(definition.hasNumber(kSystemMissing));
    EXPECT_TRUE(definition.hasNumber(14.0));
    EXPECT_FALSE(definition.hasNumber(NAN));
    EXPECT_FALSE(definition.hasNumber(-kInfinity));
    EXPECT_FALSE(definition.hasNumber(std::nextafter(14.0, 15.0)));
  }
}

TEST(LevelSearch, FindsNothingInALongListOfNothingButNaN) {
  EXPECT_FALSE(numbers(std::vector<double>(100, NAN)).hasNumber(1.0));
  EXPECT_FALSE(numbers(std::vector<double>(100, NAN)).hasNumber(NAN));
}

TEST(LevelSearch, ComparesTextsByteForByte) {
  for (const size_t ordinary : {1, 300}) {
    std::vector<std::string> values{"a", "a ", "", "\xc3\xa4", "Zebra", std::string("n\0l", 3),
                                    "a"};
    for (size_t i = 0; i < ordinary; ++i) values.push_back("t" + std::to_string(i * 7919 % 1000));
    const BinInfoElem definition = texts(values);
    for (const std::string& value : values) EXPECT_TRUE(definition.hasText(value)) << value;
    for (const char* other : {"A", "a  ", " a", "\xc3", "zebra", "n", "t", "t00", "\xff"}) {
      EXPECT_FALSE(definition.hasText(other)) << other;
    }
  }
}

TEST(LevelSearch, OfACopyThatOutlivesItsOriginalIsTheSame) {
  auto original = std::make_unique<BinInfoElem>(texts(std::vector<std::string>(20, "level")));
  original->stringValues[7] = "a level too long to be kept within the object that holds it";
  original->sortValues();
  const BinInfoElem copy = *original;
  original.reset();
  EXPECT_TRUE(copy.hasText("a level too long to be kept within the object that holds it"));
  EXPECT_TRUE(copy.hasText("level"));
  EXPECT_FALSE(copy.hasText("another"));
}

}  // namespace
}  // namespace proportions
