#include "workbench/delimited/structure.h"

#include "workbench/delimited/structure_kernel.h"

namespace workbench {

std::vector<const StructureFunctions*> availableStructureFunctions() {
  std::vector<const StructureFunctions*> available{&structure::kScalar};
#if defined(__x86_64__)
  available.push_back(&structure::kSse2);
  // The instructions that the file is compiled for.
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
      __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt")) {
    available.push_back(&structure::kAvx2);
  }
#endif
  return available;
}

const StructureFunctions& structureFunctions() {
  static const StructureFunctions& best = *availableStructureFunctions().back();
  return best;
}

}  // namespace workbench
