#include "workbench/output/split_names.h"

#include <string_view>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/dataset/value_text.h"
#include "workbench/output/distinguish.h"
#include "workbench/output/labels.h"

namespace workbench {
namespace {

std::string shownText(const Variable& variable, const SplitValue& value) {
  const auto* number = std::get_if<double>(&value);
  return number != nullptr ? shownValue(variable, *number)
                           : shownValue(variable, std::string_view(std::get<std::string>(value)));
}

}  // namespace

const SplitNames::Alike& SplitNames::alikeOf(VarIndex index) {
  const auto [known, isNew] = alike_.try_emplace(index);
  Alike& alike = known->second;
  if (!isNew) return alike;
  const Variable& variable = currentSession().dataset->declaration(index);
  for (const auto& [value, label] : variable.numberLabels) alike[label][value];
  for (const auto& [value, label] : variable.stringLabels) alike[label][value];
  std::erase_if(alike, [](const auto& entry) { return entry.second.size() < 2; });
  for (auto& [text, names] : alike) {
    std::vector<LabelData> labels;
    for (const auto& [value, name] : names) labels.push_back(describeSplitValue(index, value));
    std::vector<LabelData*> each;
    for (LabelData& label : labels) each.push_back(&label);
    distinguish(each);
    size_t at = 0;
    for (auto& [value, name] : names) name = labels[at++].text;
  }
  return alike;
}

std::string SplitNames::text(VarIndex variable, const SplitValue& value) {
  const Alike& alike = alikeOf(variable);
  if (!alike.empty()) {
    const auto found =
        alike.find(shownText(currentSession().dataset->declaration(variable), value));
    if (found != alike.end()) {
      const auto name = found->second.find(value);
      if (name != found->second.end()) return name->second;
    }
  }
  return describeSplitValue(variable, value).text;
}

}  // namespace workbench
