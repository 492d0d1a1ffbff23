#include "workbench/values/column_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"

namespace workbench {

void refuseEqualNames(const std::vector<std::string>& names, const std::string& place) {
  std::unordered_map<std::string, size_t> seen;
  for (size_t i = 0; i < names.size(); ++i) {
    if (names[i].empty()) continue;
    const auto [other, isNew] = seen.emplace(foldCase(names[i]), i);
    if (isNew) continue;
    const std::string& first = names[other->second];
    throw DataError(
        first == names[i]
            ? fmt::format("{}: columns {} and {} are both named {}. Rename one of them.", place,
                          other->second + 1, i + 1, first)
            : fmt::format("{}: columns {} and {} are named {} and {}, which differ in the case of "
                          "letters only. Rename one of them.",
                          place, other->second + 1, i + 1, first, names[i]));
  }
}

void refuseBadNames(const std::vector<std::string>& names, const std::string& place) {
  const auto unnamed = std::find(names.begin(), names.end(), std::string());
  if (unnamed != names.end()) {
    throw DataError(fmt::format("{}: column {} has no name. Give every column a name.", place,
                                unnamed - names.begin() + 1));
  }
  refuseEqualNames(names, place);
}

}  // namespace workbench
