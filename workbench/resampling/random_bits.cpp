#include "workbench/resampling/random_bits.h"

namespace workbench {
namespace {

constexpr int kRounds = 10;
constexpr uint64_t kMultiplier0 = 0xD2E7470EE14C6C93, kMultiplier1 = 0xCA5A826395121157;
// The golden ratio and the square root of 3, less 1.
constexpr uint64_t kWeyl0 = 0x9E3779B97F4A7C15, kWeyl1 = 0xBB67AE8584CAA73B;

__extension__ using Wide = unsigned __int128;

uint64_t upper(Wide number) { return static_cast<uint64_t>(number >> 64); }
uint64_t lower(Wide number) { return static_cast<uint64_t>(number); }

}  // namespace

std::array<uint64_t, 4> philoxBlock(std::array<uint64_t, 4> counter, std::array<uint64_t, 2> key) {
  for (int round = 0; round < kRounds; ++round) {
    const Wide p0 = Wide{kMultiplier0} * counter[0];
    const Wide p1 = Wide{kMultiplier1} * counter[2];
    counter = {upper(p1) ^ counter[1] ^ key[0], lower(p1), upper(p0) ^ counter[3] ^ key[1],
               lower(p0)};
    key[0] += kWeyl0;
    key[1] += kWeyl1;
  }
  return counter;
}

RandomStream::RandomStream(uint64_t seed, uint64_t group, uint64_t sample)
    : counter_{0, sample, group, 0}, key_{seed, 0} {}

void RandomStream::nextBlock() {
  block_ = philoxBlock(counter_, key_);
  ++counter_[0];
  used_ = 0;
}

}  // namespace workbench
