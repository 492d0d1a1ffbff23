/// Variables by name.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/constants.h"

namespace workbench {

/// Finds variables by name, whatever the case of the letters; an exact match wins.
class NameIndex {
 public:
  /// Adds the next variable in file order.
  void add(std::string_view name);
  /// Negative: none. Of several names that differ in case only, the first one is found.
  VarIndex find(std::string_view name) const;
  const std::vector<std::string>& names() const { return names_; }

 private:
  std::vector<std::string> names_;
  std::unordered_map<std::string, VarIndex> exact_;
  std::unordered_map<std::string, VarIndex> folded_;
};

}  // namespace workbench
