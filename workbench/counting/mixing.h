/// Hashes of words.
#pragma once

#include <cstdint>

namespace workbench {

/// Spreads every bit of a word over the bits of the result, the low ones as much as the high ones.
inline uint64_t mixed(uint64_t word) {
  word = (word ^ word >> 32U) * 0x9E37'79B9'7F4A'7C15;
  return word ^ word >> 32U;
}

}  // namespace workbench
