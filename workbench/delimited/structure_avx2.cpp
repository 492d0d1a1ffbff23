#include <immintrin.h>

#include "workbench/delimited/structure_kernel.h"

namespace workbench::structure {
namespace {

class Lanes {
 public:
  explicit Lanes(const char* data)
      : low_(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(data))),
        high_(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(data + 32))) {}

  uint64_t equal(char c) const {
    const __m256i wanted = _mm256_set1_epi8(c);
    return joined(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low_, wanted)),
                  _mm256_movemask_epi8(_mm256_cmpeq_epi8(high_, wanted)));
  }
  uint64_t beyondAscii() const {
    return joined(_mm256_movemask_epi8(low_), _mm256_movemask_epi8(high_));
  }

 private:
  static uint64_t joined(int low, int high) {
    return static_cast<uint64_t>(static_cast<uint32_t>(high)) << 32U | static_cast<uint32_t>(low);
  }

  __m256i low_;
  __m256i high_;
};

}  // namespace

const StructureFunctions kAvx2 = functionsOf<Lanes>("avx2");

}  // namespace workbench::structure
