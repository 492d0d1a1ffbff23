#include "module/model/valid_specs.h"

#include <set>

namespace proportions {

std::vector<VarIndex> distinctIndices(const std::vector<VarIndex>& indices) {
  std::set<VarIndex> met;
  std::vector<VarIndex> distinct;
  for (const VarIndex index : indices) {
    if (met.insert(index).second) distinct.push_back(index);
  }
  return distinct;
}

}  // namespace proportions
