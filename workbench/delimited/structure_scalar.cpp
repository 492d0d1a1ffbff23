#include "workbench/delimited/structure_kernel.h"

namespace workbench::structure {
namespace {

/// Byte by byte, for machines without the instructions of the others.
class Lanes {
 public:
  explicit Lanes(const char* data) : data_(data) {}

  uint64_t equal(char c) const {
    uint64_t bits = 0;
    for (unsigned i = 0; i < 64; ++i) bits |= static_cast<uint64_t>(data_[i] == c) << i;
    return bits;
  }
  uint64_t beyondAscii() const {
    uint64_t bits = 0;
    for (unsigned i = 0; i < 64; ++i) {
      bits |= static_cast<uint64_t>(static_cast<unsigned char>(data_[i]) >> 7U) << i;
    }
    return bits;
  }

 private:
  const char* data_;
};

}  // namespace

const StructureFunctions kScalar = functionsOf<Lanes>("scalar");

}  // namespace workbench::structure
