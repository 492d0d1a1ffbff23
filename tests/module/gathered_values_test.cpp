// The order of values that split groups have gathered: one strict order of all of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "module/model/gathered_values.h"
#include "tests/recording/host.h"

namespace proportions {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(GatheredValues, MissingFirstThenNumbersThenNaN) {
  const std::vector<double> ordered{kSystemMissing, -kInfinity, -2.0, 0.0, 1e308, kInfinity, NAN};
  const VarValueLess less;
  for (size_t i = 0; i < ordered.size(); ++i) {
    for (size_t j = 0; j < ordered.size(); ++j) {
      EXPECT_EQ(less(VarValue::number(ordered[i]), VarValue::number(ordered[j])), i < j)
          << ordered[i] << ' ' << ordered[j];
    }
  }
}

TEST(GatheredValues, NoneVanishesBesideANaN) {
  std::vector<double> values{3.0, NAN, 1.0, kSystemMissing, 2.0};
  for (size_t turn = 0; turn < values.size(); ++turn) {
    std::rotate(values.begin(), values.begin() + 1, values.end());
    GatheredValues gathered;
    for (const double value : values) gathered.insert(VarValue::number(value));
    for (const double value : values) gathered.insert(VarValue::number(value));
    gathered.sort();
    ASSERT_EQ(gathered.list().size(), values.size());
    auto element = gathered.list().begin();
    EXPECT_EQ((element++)->numericValue, kSystemMissing);
    for (const double number : {1.0, 2.0, 3.0}) EXPECT_EQ((element++)->numericValue, number);
    EXPECT_TRUE(std::isnan(element->numericValue));
  }
}

}  // namespace
}  // namespace proportions
