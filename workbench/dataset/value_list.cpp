#include "workbench/dataset/value_list.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "workbench/dataset/variable.h"

namespace workbench {
namespace {

/// The value of a row, unless it is missing.
bool readValue(const Variable& variable, const double* words, SplitValue& value) {
  if (!variable.isString()) {
    value = *words;
    return *words != kSystemMissing && !isUserMissing(variable, *words);
  }
  const std::string_view text =
      trimmed({reinterpret_cast<const char*>(words), static_cast<size_t>(variable.width)});
  value = std::string(text);
  return !text.empty() && std::find(variable.missingStrings.begin(), variable.missingStrings.end(),
                                    text) == variable.missingStrings.end();
}

}  // namespace

ValueList occurringValues(ActiveDataset& dataset, VarIndex index, size_t most) {
  ValueList list;
  const Variable variable = dataset.variable(index);
  const auto before = [](const SplitValue& a, const SplitValue& b) {
    return compareSplitValues(a, b) < 0;
  };
  const std::unique_ptr<CaseFeed> feed = dataset.openFeed();
  if (feed == nullptr) return list;
  while (const CaseChunk* chunk = feed->NextChunk()) {
    const ColumnView view = chunk->columns[index];
    for (ptrdiff_t row = 0; row < chunk->count; ++row) {
      SplitValue value;
      if (!readValue(variable, view.words + row * view.stride, value)) continue;
      const auto place = std::lower_bound(list.values.begin(), list.values.end(), value, before);
      if (place != list.values.end() && *place == value) continue;
      if (list.values.size() == most) {
        list.more = true;
        return list;
      }
      list.values.insert(place, std::move(value));
    }
  }
  return list;
}

}  // namespace workbench
