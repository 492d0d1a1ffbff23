#include <emmintrin.h>

#include "workbench/delimited/structure_kernel.h"

namespace workbench::structure {
namespace {

class Lanes {
 public:
  explicit Lanes(const char* data) {
    for (size_t i = 0; i < 4; ++i) {
      part_[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 16 * i));
    }
  }

  uint64_t equal(char c) const {
    const __m128i wanted = _mm_set1_epi8(c);
    return gather([&](__m128i part) { return _mm_movemask_epi8(_mm_cmpeq_epi8(part, wanted)); });
  }
  uint64_t beyondAscii() const {
    return gather([](__m128i part) { return _mm_movemask_epi8(part); });
  }

 private:
  template <class Mask>
  uint64_t gather(Mask mask) const {
    uint64_t bits = 0;
    for (int i = 0; i < 4; ++i)
      bits |= static_cast<uint64_t>(static_cast<unsigned>(mask(part_[i]))) << 16 * i;
    return bits;
  }

  __m128i part_[4];
};

}  // namespace

const StructureFunctions kSse2 = functionsOf<Lanes>("sse2");

}  // namespace workbench::structure
