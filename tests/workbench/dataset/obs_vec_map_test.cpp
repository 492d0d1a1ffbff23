#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "host/data_source.h"

namespace {

TEST(ObsVecMap, CountsTheWordsOfKeyAndCell) {
  EXPECT_EQ(ObsVecMap({1, 2, 3}, true).CellSize(), 7);
  EXPECT_EQ(ObsVecMap({}, true).CellSize(), 1);
}

TEST(ObsVecMap, FindsWhatWasInserted) {
  ObsVecMap map({1, 1}, true);
  const double key[] = {1, 2};
  const double other[] = {2, 1};
  EXPECT_EQ(map.Contains(key), nullptr);
  double* cell = map.Insert(key);
  EXPECT_EQ(*cell, 0.0);
  *cell = 7;
  EXPECT_EQ(map.Contains(key), cell);
  EXPECT_EQ(map.Contains(other), nullptr);
}

TEST(ObsVecMap, KeepsKeysOfItsOwn) {
  ObsVecMap map({1}, true);
  {
    std::vector<double> key{5};
    *map.Insert(key.data()) = 1;
    key[0] = 6;
  }
  const double key = 5;
  ASSERT_NE(map.Contains(&key), nullptr);
  EXPECT_EQ(*map.Contains(&key), 1.0);
}

TEST(ObsVecMap, AddressesStayValid) {
  ObsVecMap map({1}, true);
  std::vector<double*> cells;
  for (int i = 0; i < 10000; ++i) {
    const double key = i;
    cells.push_back(map.Insert(&key));
    *cells.back() = i;
  }
  for (int i = 0; i < 10000; ++i) {
    const double key = i;
    ASSERT_EQ(map.Contains(&key), cells[static_cast<size_t>(i)]);
    ASSERT_EQ(*cells[static_cast<size_t>(i)], i);
  }
}

TEST(ObsVecMap, ComparesBytes) {
  ObsVecMap map({1}, true);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double zero = 0.0;
  const double minusZero = -0.0;
  *map.Insert(&nan) = 3;
  map.Insert(&zero);
  ASSERT_NE(map.Contains(&nan), nullptr);
  EXPECT_EQ(*map.Contains(&nan), 3.0);
  EXPECT_EQ(map.Contains(&minusZero), nullptr);
}

}  // namespace
