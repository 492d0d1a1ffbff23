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

void SplitNames::tellApart(VarIndex variable, Names& names) {
  std::vector<LabelData> labels;
  for (const auto& [value, name] : names) labels.push_back(describeSplitValue(variable, value));
  std::vector<LabelData*> each;
  for (LabelData& label : labels) each.push_back(&label);
  distinguish(each);
  size_t at = 0;
  for (auto& [value, name] : names) name = labels[at++].text;
}

SplitNames::Alike SplitNames::labelled(VarIndex variable) {
  Alike alike;
  const Variable& entry = currentSession().dataset->declaration(variable);
  for (const auto& [value, label] : entry.numberLabels) alike[label][value];
  for (const auto& [value, label] : entry.stringLabels) alike[label][value];
  for (auto& [text, names] : alike) tellApart(variable, names);
  return alike;
}

void SplitNames::note(VarIndex variable, const SplitValue& value) {
  auto known = alike_.find(variable);
  if (known == alike_.end()) known = alike_.emplace(variable, labelled(variable)).first;
  Alike& alike = known->second;
  if (alike.empty()) return;
  const auto found = alike.find(shownText(currentSession().dataset->declaration(variable), value));
  if (found == alike.end() || !found->second.try_emplace(value).second) return;
  tellApart(variable, found->second);
}

const std::string* SplitNames::toldApart(VarIndex variable, const SplitValue& value) const {
  const auto known = alike_.find(variable);
  if (known == alike_.end() || known->second.empty()) return nullptr;
  const Alike& alike = known->second;
  const auto found = alike.find(shownText(currentSession().dataset->declaration(variable), value));
  if (found == alike.end()) return nullptr;
  const auto name = found->second.find(value);
  return name == found->second.end() ? nullptr : &name->second;
}

std::string SplitNames::text(VarIndex variable, const SplitValue& value) const {
  const std::string* name = toldApart(variable, value);
  return name != nullptr ? *name : describeSplitValue(variable, value).text;
}

}  // namespace workbench
