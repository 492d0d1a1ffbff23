// The map from keys of observations to numbers.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "host/data_source.h"
#include "tests/conformance/host_under_test.h"

namespace {

using conformance::numbers;
using conformance::open;
using conformance::strings;

TEST(Map, KeyWidthsInWords) {
  const auto host = open({{numbers("x", {1}), strings("s8", 8, {"a"}), strings("s9", 9, {"a"}),
                           strings("s16", 16, {"a"}), strings("s17", 17, {"a"})}});
  ProcedureDataSource source;
  EXPECT_EQ(ObsVecMap::MakeKeySpec(source, {0, 1, 2, 3, 4}), (std::vector<int32_t>{1, 1, 2, 2, 3}));
  EXPECT_EQ(ObsVecMap::MakeKeySpec(source, {2, 0}), (std::vector<int32_t>{2, 1}));
  ObsVecMap map({2, 1, 3}, true);
  EXPECT_EQ(map.CellSize(), 7);
}

TEST(Map, CellsStartAtZeroAndKeepTheirAddress) {
  const auto host = open({{numbers("x", {1})}});
  ObsVecMap map({1, 1}, true);
  std::vector<double*> cells;
  for (int i = 0; i < 1000; ++i) {
    const double key[2] = {static_cast<double>(i % 10), static_cast<double>(i / 10)};
    ASSERT_EQ(map.Contains(key), nullptr);
    double* cell = map.Insert(key);
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(*cell, 0.0);
    *cell = i;
    cells.push_back(cell);
  }
  for (int i = 0; i < 1000; ++i) {
    const double key[2] = {static_cast<double>(i % 10), static_cast<double>(i / 10)};
    EXPECT_EQ(map.Contains(key), cells[static_cast<size_t>(i)]);
    EXPECT_EQ(*cells[static_cast<size_t>(i)], i);
  }
}

TEST(Map, KeysCompareByteForByte) {
  const auto host = open({{numbers("x", {1})}});
  ObsVecMap map({1}, true);
  // Words of strings can be NaN with one or another payload, which no comparison of doubles tells.
  double first = 0;
  double second = 0;
  std::memset(&first, 0xff, sizeof first);
  std::memset(&second, 0xff, sizeof second);
  std::memset(&second, 'a', 1);
  *map.Insert(&first) = 1;
  EXPECT_EQ(map.Contains(&second), nullptr);
  *map.Insert(&second) = 2;
  ASSERT_NE(map.Contains(&first), nullptr);
  EXPECT_EQ(*map.Contains(&first), 1);
  EXPECT_EQ(*map.Contains(&second), 2);
  const double zero = 0.0;
  const double negativeZero = -0.0;
  map.Insert(&zero);
  EXPECT_EQ(map.Contains(&negativeZero), nullptr);
}

TEST(Map, CopiedKeysMayGo) {
  const auto host = open({{numbers("x", {1})}});
  ObsVecMap map({2}, true);
  double key[2] = {1, 2};
  *map.Insert(key) = 7;
  key[0] = 5;
  EXPECT_EQ(map.Contains(key), nullptr);
  key[0] = 1;
  ASSERT_NE(map.Contains(key), nullptr);
  EXPECT_EQ(*map.Contains(key), 7);
}

}  // namespace
