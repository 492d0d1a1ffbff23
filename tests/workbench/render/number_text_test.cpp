#include "workbench/results/number_text.h"

#include <gtest/gtest.h>

#include <limits>

#include "host/constants.h"

namespace workbench {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumberText, DecimalsAreRoundedAsTheDecimalFormSuggests) {
  struct Example {
    double value;
    int decimals;
    const char* text;
  };
  const Example examples[] = {
      {0.0625, 3, "0.063"},
      {-0.0625, 3, "-0.063"},
      {0.1875, 3, "0.188"},
      {0.2845, 3, "0.285"},  // the double lies below it
      {1.0005, 3, "1.001"},
      {2.675, 2, "2.68"},
      {0.5, 0, "1"},
      {0.4999, 0, "0"},
      {9.9996, 3, "10.000"},
      {0.9996, 3, "1.000"},
      {0, 3, "0.000"},
      {-0.0, 3, "0.000"},
      {-0.0004, 3, "0.000"},
      {0.0005, 3, "0.001"},
      {0.00049999, 3, "0.000"},
      {1e-300, 6, "0.000000"},
      {1234.5678, 3, "1234.568"},
      {-1.5275, 3, "-1.528"},
      {123456789, 1, "123456789.0"},
      {1e20, 1, "100000000000000000000.0"},
      {0.1, 15, "0.100000000000000"},
      {0.28449999999999998, 3, "0.285"},  // what sums and quotients leave of 0.2845
  };
  for (const auto& [value, decimals, text] : examples) {
    EXPECT_EQ(fixedText(value, decimals), text) << value;
  }
}

TEST(NumberText, Percent) {
  EXPECT_EQ(fixedText(0.308, 1, 2), "30.8");
  EXPECT_EQ(fixedText(0.30799, 1, 2), "30.8");
  EXPECT_EQ(fixedText(1, 1, 2), "100.0");
  EXPECT_EQ(fixedText(-0.00042, 2, 2), "-0.04");
  EXPECT_EQ(fixedText(0.00005, 1, 2), "0.0");
  EXPECT_EQ(fixedText(0.29, 0, 2), "29");
  EXPECT_EQ(fixedText(0, 2, 2), "0.00");
  EXPECT_EQ(fixedText(0.001, 1, 2), "0.1");
}

TEST(NumberText, CountsAreWholeNumbers) {
  EXPECT_EQ(countText(0), "0");
  EXPECT_EQ(countText(-0.0), "0");
  EXPECT_EQ(countText(37), "37");
  EXPECT_EQ(countText(9007199254740992), "9007199254740992");
  EXPECT_EQ(countText(1e300), "1e+300");
  EXPECT_EQ(countText(2.5), "2.5");
  EXPECT_EQ(countText(kSystemMissing), ".");
}

TEST(NumberText, Probabilities) {
  EXPECT_EQ(probabilityText(0.5), "0.500");
  EXPECT_EQ(probabilityText(0.001), "0.001");
  EXPECT_EQ(probabilityText(0.00099999), "<0.001");
  EXPECT_EQ(probabilityText(1e-300), "<0.001");
  EXPECT_EQ(probabilityText(0), "<0.001");
  EXPECT_EQ(probabilityText(1), "1.000");
  EXPECT_EQ(probabilityText(0.04999, 5), "0.04999");
  EXPECT_EQ(probabilityText(0.000001, 5), "<0.00001");
  EXPECT_EQ(probabilityText(0.0625, 1), "0.063");
  EXPECT_EQ(probabilityText(kSystemMissing), ".");
  EXPECT_EQ(probabilityText(kNaN), "NaN");
  EXPECT_EQ(probabilityText(kInfinity), "Infinity");
}

TEST(NumberText, DecimalsLeaveTwoDigits) {
  EXPECT_EQ(decimalsFor(0.5, 3, 6), 3);
  EXPECT_EQ(decimalsFor(-0.01, 3, 6), 3);
  EXPECT_EQ(decimalsFor(0.0099, 3, 6), 4);
  EXPECT_EQ(decimalsFor(0.0001, 3, 6), 5);
  EXPECT_EQ(decimalsFor(1e-9, 3, 6), 6);
  EXPECT_EQ(decimalsFor(0, 3, 6), 3);
}

}  // namespace
}  // namespace workbench
