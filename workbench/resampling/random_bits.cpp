#include "workbench/resampling/random_bits.h"

namespace workbench {
namespace {

constexpr int kRounds = 10;
constexpr uint64_t kMultiplier0 = 0xD2E7470EE14C6C93, kMultiplier1 = 0xCA5A826395121157;
// The golden ratio and the square root of 3, less 1.
constexpr uint64_t kWeyl0 = 0x9E3779B97F4A7C15, kWeyl1 = 0xBB67AE8584CAA73B;

struct Product {
  uint64_t high, low;
};

Product multiply(uint64_t a, uint64_t b) {
  const uint64_t a0 = a & 0xFFFFFFFF, a1 = a >> 32, b0 = b & 0xFFFFFFFF, b1 = b >> 32;
  const uint64_t middle = a1 * b0 + ((a0 * b0) >> 32);
  const uint64_t carry = a0 * b1 + (middle & 0xFFFFFFFF);
  return {a1 * b1 + (middle >> 32) + (carry >> 32), a * b};
}

}  // namespace

std::array<uint64_t, 4> philoxBlock(std::array<uint64_t, 4> counter, std::array<uint64_t, 2> key) {
  for (int round = 0; round < kRounds; ++round) {
    const Product p0 = multiply(kMultiplier0, counter[0]);
    const Product p1 = multiply(kMultiplier1, counter[2]);
    counter = {p1.high ^ counter[1] ^ key[0], p1.low, p0.high ^ counter[3] ^ key[1], p0.low};
    key[0] += kWeyl0;
    key[1] += kWeyl1;
  }
  return counter;
}

RandomStream::RandomStream(uint64_t seed, uint64_t group, uint64_t sample)
    : counter_{0, sample, group, 0}, key_{seed, 0} {}

uint64_t RandomStream::bits() {
  if (used_ == block_.size()) {
    block_ = philoxBlock(counter_, key_);
    ++counter_[0];
    used_ = 0;
  }
  return block_[used_++];
}

double RandomStream::uniform() { return (static_cast<double>(bits() >> 12) + 0.5) * 0x1p-52; }

}  // namespace workbench
