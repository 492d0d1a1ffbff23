#include "workbench/resampling/multinomial.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <sstream>

#include "../distributions/reference_table.h"
#include "host/distributions.h"

namespace workbench {
namespace {

std::vector<int64_t> wholeNumbers(const std::string& text) {
  std::istringstream in(text);
  std::vector<int64_t> numbers;
  for (int64_t number = 0; in >> number;) numbers.push_back(number);
  return numbers;
}

std::vector<int64_t> drawOne(const std::vector<int64_t>& counts, const RandomStream& stream) {
  std::vector<RandomStream> streams{stream};
  std::vector<std::vector<int64_t>> drawn{{1, 2}};
  Multinomial(counts).draw(streams, drawn);
  EXPECT_EQ(drawn.size(), 1U);
  return drawn.at(0);
}

TEST(Multinomial, DrawsAsDocumented) {
  for (const auto& row : referenceRows("draws.csv", 5)) {
    const RandomStream random(std::stoull(row[0]), std::stoull(row[1]), std::stoull(row[2]));
    EXPECT_EQ(drawOne(wholeNumbers(row[3]), random), wholeNumbers(row[4]))
        << row[0] << ' ' << row[1] << ' ' << row[2];
  }
}

TEST(Multinomial, DrawsTheSameSampleBesideOthers) {
  const std::vector<int64_t> counts{3, 400, 17, 0, 90000, 1, 2500};
  std::vector<RandomStream> streams;
  for (uint64_t sample = 1; sample <= 9; ++sample) streams.emplace_back(21, 4, sample);
  std::vector<std::vector<int64_t>> drawn;
  Multinomial(counts).draw(streams, drawn);
  ASSERT_EQ(drawn.size(), 9U);
  for (uint64_t sample = 1; sample <= 9; ++sample) {
    EXPECT_EQ(drawn[sample - 1], drawOne(counts, RandomStream(21, 4, sample))) << sample;
  }
}

TEST(Multinomial, AnswersTheLimits) {
  RandomStream random(3, 0, 1);
  EXPECT_EQ(BinomialDraw(0.3)(0, random), 0);
  EXPECT_EQ(BinomialDraw(0.0)(9, random), 0);
  EXPECT_EQ(BinomialDraw(1.0)(9, random), 9);
  EXPECT_TRUE(drawOne({}, random).empty());
  EXPECT_EQ(drawOne({0, 0}, random), (std::vector<int64_t>{0, 0}));
  EXPECT_EQ(drawOne({0, 4, 0}, random), (std::vector<int64_t>{0, 4, 0}));
}

struct BinomialCase {
  int64_t n;
  double p;
};

class BinomialDraws : public testing::TestWithParam<BinomialCase> {};

/// Pearson's chi-square over cells of at least 20 expected draws, against the 1 - 1e-6 quantile
/// (Wilson and Hilferty 1931); the seed is fixed, so that the test always gives the same.
TEST_P(BinomialDraws, FollowTheDistribution) {
  constexpr int kDraws = 200'000;
  const auto [n, p] = GetParam();
  const double mean = static_cast<double>(n) * p, deviation = std::sqrt(mean * (1 - p));
  const auto low = static_cast<int64_t>(std::max(0.0, std::floor(mean - 9 * deviation - 9)));
  const auto high = std::min<int64_t>(n, static_cast<int64_t>(std::ceil(mean + 9 * deviation + 9)));
  ASSERT_LT(high - low, 100'000) << "cells of single values";
  std::vector<double> seen(static_cast<size_t>(high - low + 1));
  RandomStream random(11, 0, static_cast<uint64_t>(n));
  const BinomialDraw draw(p);
  double sum = 0;
  for (int i = 0; i < kDraws; ++i) {
    const int64_t k = draw(n, random);
    ASSERT_GE(k, low);
    ASSERT_LE(k, high);
    ++seen[static_cast<size_t>(k - low)];
    sum += static_cast<double>(k);
  }
  EXPECT_NEAR(sum / kDraws, mean, 5 * deviation / std::sqrt(static_cast<double>(kDraws)));

  double chiSquare = 0, cells = 0, expected = 0, observed = 0;
  int32_t error = 0;
  for (int64_t k = low; k <= high; ++k) {
    expected +=
        kDraws * MCDistFun::PdfBin(static_cast<double>(k), static_cast<double>(n), p, error);
    observed += seen[static_cast<size_t>(k - low)];
    if (expected < 20 && k < high) continue;
    if (expected > 0)
      chiSquare += (observed - expected) * (observed - expected) / std::max(expected, 1.0);
    ++cells;
    expected = observed = 0;
  }
  ASSERT_EQ(error, 0);
  const double df = cells - 1, z = 4.753424308822899;
  const double limit = df * std::pow(1 - 2 / (9 * df) + z * std::sqrt(2 / (9 * df)), 3);
  EXPECT_LT(chiSquare, limit) << cells << " cells";
}

INSTANTIATE_TEST_SUITE_P(
    Multinomial, BinomialDraws,
    testing::Values(BinomialCase{1, 0.5}, BinomialCase{7, 0.3}, BinomialCase{30, 0.3},
                    BinomialCase{19, 0.5}, BinomialCase{20, 0.5}, BinomialCase{40, 0.27},
                    BinomialCase{1000, 0.009}, BinomialCase{1000, 0.011}, BinomialCase{1000, 0.97},
                    BinomialCase{100'000, 0.4}, BinomialCase{10'000'000, 1e-6},
                    BinomialCase{10'000'000, 0.5}, BinomialCase{int64_t{1} << 53, 0x1p-50}));

/// Means, variances and covariances of the multinomial distribution, each within five standard
/// errors.
TEST(Multinomial, HasTheMomentsOfTheDistribution) {
  constexpr int kDraws = 100'000;
  const std::vector<int64_t> counts{2, 30, 8, 160};
  const double n = 200;
  std::vector<double> sum(4), products(16);
  for (int i = 0; i < kDraws; ++i) {
    const std::vector<int64_t> drawn =
        drawOne(counts, RandomStream(5, 0, static_cast<uint64_t>(i)));
    ASSERT_EQ(std::accumulate(drawn.begin(), drawn.end(), int64_t{0}), 200);
    for (size_t a = 0; a < 4; ++a) {
      sum[a] += static_cast<double>(drawn[a]);
      for (size_t b = 0; b < 4; ++b) {
        products[4 * a + b] += (static_cast<double>(drawn[a]) - static_cast<double>(counts[a])) *
                               (static_cast<double>(drawn[b]) - static_cast<double>(counts[b]));
      }
    }
  }
  for (size_t a = 0; a < 4; ++a) {
    const double pa = static_cast<double>(counts[a]) / n, variance = n * pa * (1 - pa);
    EXPECT_NEAR(sum[a] / kDraws, n * pa, 5 * std::sqrt(variance / kDraws));
    for (size_t b = 0; b < 4; ++b) {
      const double pb = static_cast<double>(counts[b]) / n, other = n * pb * (1 - pb);
      const double wanted = a == b ? variance : -n * pa * pb;
      EXPECT_NEAR(products[4 * a + b] / kDraws, wanted, 10 * std::sqrt(variance * other / kDraws));
    }
  }
}

}  // namespace
}  // namespace workbench
