#include "workbench/dataset/name_index.h"

#include "workbench/text/text_fold.h"

namespace workbench {
void NameIndex::add(std::string_view name) {
  const auto index = static_cast<VarIndex>(names_.size());
  names_.emplace_back(name);
  exact_.emplace(name, index);
  folded_.emplace(foldCase(name), index);
}

VarIndex NameIndex::find(std::string_view name) const {
  if (const auto found = exact_.find(std::string(name)); found != exact_.end()) {
    return found->second;
  }
  const auto found = folded_.find(foldCase(name));
  return found == folded_.end() ? -1 : found->second;
}

}  // namespace workbench
