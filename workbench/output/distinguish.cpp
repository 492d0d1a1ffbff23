#include "workbench/output/distinguish.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace workbench {
namespace {

/// So few are compared one by one.
constexpr size_t kFewLabels = 8;

bool anyAlikeOfFew(const std::vector<LabelData*>& labels) {
  for (size_t i = 1; i < labels.size(); ++i) {
    for (size_t k = 0; k < i; ++k) {
      if (labels[i]->text == labels[k]->text) return true;
    }
  }
  return false;
}

bool anyAlike(const std::vector<LabelData*>& labels) {
  if (labels.size() <= kFewLabels) return anyAlikeOfFew(labels);
  std::unordered_set<std::string_view> seen;
  return std::any_of(labels.begin(), labels.end(),
                     [&](const LabelData* label) { return !seen.insert(label->text).second; });
}

void addVariableNames(const std::vector<LabelData*>& labels) {
  std::unordered_map<std::string, int> uses;
  for (const LabelData* label : labels) ++uses[label->text];
  for (LabelData* label : labels) {
    if (uses[label->text] > 1 && !label->owner.empty()) {
      label->text += " [" + label->owner + "]";
    }
  }
}

void addNumbers(const std::vector<LabelData*>& labels) {
  std::unordered_set<std::string> taken;
  std::unordered_map<std::string, int> numbers;  // the last one given to a text
  for (LabelData* label : labels) {
    const std::string base = label->text;
    while (!taken.insert(label->text).second) {
      int& number = numbers.try_emplace(base, 1).first->second;
      label->twin = ++number;
      label->text = base + " (" + std::to_string(number) + ")";
    }
  }
}

}  // namespace

void distinguish(const std::vector<LabelData*>& labels) {
  if (labels.size() < 2 || !anyAlike(labels)) return;
  addVariableNames(labels);
  addNumbers(labels);
}

void distinguishLabels(Table& table) {
  std::vector<LabelData*> names;
  for (const int axis : {0, 1}) {
    for (const size_t i : table.displayOrder(axis)) {
      names.push_back(&table.dimension(i).mutableLabel());
    }
  }
  distinguish(names);
  std::vector<LabelData*> children;
  for (size_t i = 0; i < table.dimensions().size(); ++i) {
    Dimension& dimension = table.dimension(i);
    for (const DimensionNode& node : dimension.nodes()) {
      children.clear();
      for (const int32_t child : node.children) children.push_back(&dimension.mutableLabel(child));
      distinguish(children);
    }
  }
}

}  // namespace workbench
