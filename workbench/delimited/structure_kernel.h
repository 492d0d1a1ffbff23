/// The functions of structure.h over 64 bytes at a time, for the implementations alone. A `Lanes`
/// class gives a bit for each of 64 bytes:
///
///   explicit Lanes(const char* data);
///   uint64_t equal(char c) const;
///   uint64_t beyondAscii() const;
///
/// It has to live in an unnamed namespace, so that code for one machine is never linked in place of
/// code for another; for the same reason nothing of the standard library is called here.
#pragma once

#include "workbench/delimited/structure.h"

namespace workbench::structure {

/// Bit i is set when a line feed stands at i + 1.
template <class Lanes>
inline uint64_t lineFeedsFrom1(const char* data, uint64_t lineFeeds) {
  return lineFeeds >> 1U | static_cast<uint64_t>(data[64] == '\n') << 63U;
}

template <class Lanes>
TextSurvey survey(const char* data, size_t size) {
  TextSurvey seen;
  uint64_t quotes = 0;
  uint64_t zeros = 0;
  uint64_t beyond = 0;
  for (size_t at = 0; at < size; at += 64) {
    const Lanes lanes(data + at);
    const size_t left = size - at;
    const uint64_t mask = left >= 64 ? ~uint64_t{0} : (uint64_t{1} << left) - 1;
    const uint64_t lineFeeds = lanes.equal('\n');
    const uint64_t returns = lanes.equal('\r') & mask;
    seen.lineFeeds += static_cast<size_t>(__builtin_popcountll(lineFeeds & mask));
    if (returns != 0) {
      seen.carriageReturns += static_cast<size_t>(__builtin_popcountll(returns));
      // A line feed right after the text makes no pair: it is not counted either.
      const uint64_t inside = left > 64 ? ~uint64_t{0} : (uint64_t{1} << (left - 1)) - 1;
      seen.pairs += static_cast<size_t>(
          __builtin_popcountll(returns & lineFeedsFrom1<Lanes>(data + at, lineFeeds) & inside));
    }
    quotes |= lanes.equal('"') & mask;
    zeros |= lanes.equal('\0') & mask;
    beyond |= lanes.beyondAscii() & mask;
  }
  seen.quotes = quotes != 0;
  seen.zeros = zeros != 0;
  seen.beyondAscii = beyond != 0;
  return seen;
}

/// Writes eight positions whether there are as many or not, as long as it is not too few: a loop
/// that ends where the bits end is mispredicted once a word.
template <class Lanes>
inline uint32_t* writePositions(uint64_t bits, uint32_t base, uint32_t* out) {
  const auto count = static_cast<size_t>(__builtin_popcountll(bits));
  for (size_t done = 0; done < count; done += 8) {
    for (size_t i = 0; i < 8; ++i) {
      out[done + i] = base + static_cast<uint32_t>(__builtin_ctzll(bits | uint64_t{1} << 63U));
      bits &= bits - 1;
    }
  }
  return out + count;
}

template <class Lanes>
size_t find(const char* data, size_t size, char delimiter, bool quotes, uint32_t* positions) {
  uint32_t* out = positions;
  for (size_t at = 0; at < size; at += 64) {
    const Lanes lanes(data + at);
    const uint64_t lineFeeds = lanes.equal('\n');
    uint64_t bits = lanes.equal(delimiter) | lineFeeds;
    if (const uint64_t returns = lanes.equal('\r'); returns != 0) {
      bits |= returns & ~lineFeedsFrom1<Lanes>(data + at, lineFeeds);
    }
    if (quotes) bits |= lanes.equal('"');
    if (size - at < 64) bits &= (uint64_t{1} << (size - at)) - 1;
    out = writePositions<Lanes>(bits, static_cast<uint32_t>(at), out);
  }
  return static_cast<size_t>(out - positions);
}

template <class Lanes>
constexpr StructureFunctions functionsOf(const char* name) noexcept {
  return {name, &survey<Lanes>, &find<Lanes>};
}

extern const StructureFunctions kScalar;
#if defined(__x86_64__)
extern const StructureFunctions kSse2;
extern const StructureFunctions kAvx2;
#endif

}  // namespace workbench::structure
