// Counting by bits gives what counting one by one gives.
#include "module/paired/pair_counter.h"

#include <gtest/gtest.h>

#include <random>

namespace proportions::paired {
namespace {

struct Setting {
  size_t nFirst;
  size_t nSecond;
  int cases;
  std::vector<double> weights;
};

/// Names a setting in the list of tests.
void PrintTo(const Setting& setting, std::ostream* out) {
  *out << setting.nFirst << " and " << setting.nSecond << " variables, " << setting.cases
       << " cases, " << setting.weights.size() << " weights";
}

class PairCounterAgainstPlainCount : public ::testing::TestWithParam<Setting> {};

TEST_P(PairCounterAgainstPlainCount, Agree) {
  const auto& [nFirst, nSecond, cases, weights] = GetParam();
  std::vector<PropZPairSamp> records;
  for (size_t i = 0; i < nFirst; ++i) {
    for (size_t j = nSecond == 0 ? i + 1 : 0; j < (nSecond == 0 ? nFirst : nSecond); ++j) {
      records.emplace_back().firstLocalVarIndex = static_cast<int32_t>(i);
      records.back().secondLocalVarIndex = static_cast<int32_t>(j);
    }
  }
  std::vector<PropZPairSamp> plain = records;
  PairCounter counter(nFirst, nSecond, records);
  std::mt19937 random(20261121);
  const auto draw = [&random](std::vector<Code>& codes) {
    for (Code& code : codes) code = static_cast<Code>(static_cast<int>(random() % 3) - 1);
  };
  std::vector<Code> first(nFirst), second(nSecond);
  for (int i = 0; i < cases; ++i) {
    draw(first);
    draw(second);
    const double w = weights[random() % weights.size()];
    counter.add(first, second, w);
    for (PropZPairSamp& record : plain) {
      const Code a = first[record.firstLocalVarIndex];
      const Code b = (nSecond == 0 ? first : second)[record.secondLocalVarIndex];
      if (a < 0 || b < 0) continue;
      (a == 1 ? (b == 1 ? record._n11 : record._n10) : (b == 1 ? record._n01 : record._n00)) += w;
    }
  }
  counter.finish();
  for (size_t i = 0; i < plain.size(); ++i) {
    EXPECT_EQ(records[i]._n11, plain[i]._n11);
    EXPECT_EQ(records[i]._n10, plain[i]._n10);
    EXPECT_EQ(records[i]._n01, plain[i]._n01);
    EXPECT_EQ(records[i]._n00, plain[i]._n00);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, PairCounterAgainstPlainCount,
    ::testing::Values(
        Setting{7, 0, 0, {1}}, Setting{7, 0, 1, {1}}, Setting{7, 0, 63, {1}},
        Setting{7, 0, 64, {1}}, Setting{7, 0, 65, {1}}, Setting{5, 4, 4095, {1}},
        Setting{5, 4, 4097, {1}}, Setting{6, 0, 9000, {1, 2, 3}}, Setting{3, 3, 9000, {1e9, 7, 1}},
        Setting{4, 0, 5000, {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18,
                             19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36,
                             37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54,
                             55, 56, 57, 58, 59, 60, 61, 62, 63, 64, 65, 66, 67, 68, 69, 70}}));

}  // namespace
}  // namespace proportions::paired
