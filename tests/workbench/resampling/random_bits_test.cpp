#include "workbench/resampling/random_bits.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

using Block = std::array<uint64_t, 4>;

// The known answers that Salmon et al. publish with their code.
TEST(RandomBits, PhiloxGivesTheKnownAnswers) {
  constexpr uint64_t kOnes = ~uint64_t{0};
  EXPECT_EQ(philoxBlock({0, 0, 0, 0}, {0, 0}), (Block{0x16554d9eca36314c, 0xdb20fe9d672d0fdc,
                                                      0xd7e772cee186176b, 0x7e68b68aec7ba23b}));
  EXPECT_EQ(
      philoxBlock({kOnes, kOnes, kOnes, kOnes}, {kOnes, kOnes}),
      (Block{0x87b092c3013fe90b, 0x438c3c67be8d0224, 0x9cc7d7c69cd777b6, 0xa09caebf594f0ba0}));
  EXPECT_EQ(
      philoxBlock({0x243f6a8885a308d3, 0x13198a2e03707344, 0xa4093822299f31d0, 0x082efa98ec4e6c89},
                  {0x452821e638d01377, 0xbe5466cf34e90c6c}),
      (Block{0xa528f45403e61d95, 0x38c72dbd566e9788, 0xa5a1610e72fd18b5, 0x57bd43b5e52b7fe6}));
}

TEST(RandomBits, StreamsAreBlocksOfTheirCounter) {
  RandomStream stream(7, 2, 5);
  for (uint64_t block = 0; block < 3; ++block) {
    for (const uint64_t bits : philoxBlock({block, 5, 2, 0}, {7, 0})) {
      EXPECT_EQ(stream.bits(), bits);
    }
  }
}

TEST(RandomBits, UniformNumbersAreExactAndInside) {
  RandomStream bits(1, 0, 1), numbers(1, 0, 1);
  for (int i = 0; i < 1000; ++i) {
    const double u = numbers.uniform();
    EXPECT_GT(u, 0);
    EXPECT_LT(u, 1);
    EXPECT_EQ(static_cast<uint64_t>(u * 0x1p52), bits.bits() >> 12);
  }
}

}  // namespace
}  // namespace workbench
