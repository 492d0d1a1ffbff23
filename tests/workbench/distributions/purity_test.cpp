#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

#include "host/distributions.h"

namespace {

// Calls of every function, by number.
double call(std::size_t number) {
  const double k = static_cast<double>(number / 8 % 50),
               n = 60 + static_cast<double>(number % 3) * 1e6;
  const double p = number % 2 == 0 ? 0.5 : 1e-5;
  int32_t error = 0;
  switch (number % 8) {
    case 0:
      return MCDistFun::PdfBin(k, n, p, error);
    case 1:
      return MCDistFun::CdfBin(k, n, p, error);
    case 2:
      return MCDistFun::CdfBinUpper(k, n, p, error);
    case 3:
      return MCDistFun::IdfBeta(0.025, k + 0.5, n - k + 0.5);
    case 4:
      return MCDistFun::IdfBetaUpper(0.025, k + 0.5, n - k + 0.5);
    case 5:
      return MCDistFun::CdfStdNorm(k / 7 - 3);
    case 6:
      return MCDistFun::IdfStdNorm((k + 1) / 60);
    default:
      return MCDistFun::FindNCParamT(k / 10 - 2, 5, 0.3, 1e-6, 1e-12);
  }
}

std::vector<std::uint64_t> bitsInOrder(const std::vector<std::size_t>& order) {
  std::vector<std::uint64_t> bits(order.size());
  for (const std::size_t number : order) bits[number] = std::bit_cast<std::uint64_t>(call(number));
  return bits;
}

std::vector<std::size_t> inOrder() {
  std::vector<std::size_t> order(800);
  std::iota(order.begin(), order.end(), std::size_t{0});
  return order;
}

TEST(Purity, ResultsDoNotDependOnTheCallsBefore) {
  auto order = inOrder();
  const auto expected = bitsInOrder(order);
  std::mt19937 random(20240607);
  for (int round = 0; round < 4; ++round) {
    std::shuffle(order.begin(), order.end(), random);
    EXPECT_EQ(bitsInOrder(order), expected);
  }
}

TEST(Purity, ResultsDoNotDependOnOtherThreads) {
  const auto order = inOrder();
  const auto expected = bitsInOrder(order);
  std::vector<std::uint64_t> one, two;
  std::thread first([&] { one = bitsInOrder(order); });
  std::thread second([&] { two = bitsInOrder(order); });
  first.join();
  second.join();
  EXPECT_EQ(one, expected);
  EXPECT_EQ(two, expected);
}

}  // namespace
