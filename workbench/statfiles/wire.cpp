#include "workbench/statfiles/wire.h"

#include <bit>

namespace workbench::wire {
namespace {

constexpr uint64_t kQuietNan = 0x7FF8000000000000;
constexpr uint64_t kLetterBits = 0x7F;

}  // namespace

double missingNumber(char letter) {
  return std::bit_cast<double>(kQuietNan | static_cast<uint64_t>(letter & 0x7F));
}

char missingLetter(double number) {
  return static_cast<char>(std::bit_cast<uint64_t>(number) & kLetterBits);
}

}  // namespace workbench::wire
