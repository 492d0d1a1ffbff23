#include "workbench/dataset/file_cases.h"

#include <fmt/format.h>

namespace workbench {

std::string FileCases::lineText(size_t file, uint64_t line) const {
  return fmt::format("{}, line {}", files_.files[file].label, line);
}

std::optional<OddText> FileCases::oddText(const KindTally& tally) const {
  const auto odd = tally.odd();
  if (!odd) return {};
  const auto& [file, line] = odd->position;
  return OddText{odd->text, lineText(file, line), odd->usual};
}

}  // namespace workbench
