/// Random numbers that are the same on every machine, whatever was drawn before or beside them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace workbench {

/// Philox4x64-10 (Salmon, Moraes, Dror and Shaw 2011, "Parallel random numbers: as easy as 1, 2,
/// 3", SC '11): a block of four numbers is a function of a counter and a key alone, so that each
/// sample has a stream of its own and samples may be drawn in any order.
std::array<uint64_t, 4> philoxBlock(std::array<uint64_t, 4> counter, std::array<uint64_t, 2> key);

/// The stream of one sample of one split group: blocks 0, 1, ... of the counter
/// (block, sample, group, 0) under the key (seed, 0), the four numbers of a block in their order.
class RandomStream {
 public:
  RandomStream(uint64_t seed, uint64_t group, uint64_t sample);
  /// The next 64 bits.
  uint64_t bits() {
    if (used_ == block_.size()) nextBlock();
    return block_[used_++];
  }
  /// The next number of the open interval (0, 1): the upper 52 bits plus a half, times 2^-52, so
  /// that it is exact.
  double uniform() { return (static_cast<double>(bits() >> 12) + 0.5) * 0x1p-52; }

 private:
  void nextBlock();

  std::array<uint64_t, 4> counter_;
  std::array<uint64_t, 2> key_;
  std::array<uint64_t, 4> block_{};
  size_t used_ = 4;
};

}  // namespace workbench
