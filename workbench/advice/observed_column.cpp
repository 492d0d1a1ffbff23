#include "workbench/advice/observed_column.h"

#include <algorithm>
#include <utility>

namespace workbench {

std::unique_ptr<ObservedColumn> observeColumn(const Variable& variable, ColumnQuestions questions) {
  return variable.isString() ? observeTexts(variable, std::move(questions))
                             : observeNumbers(variable, std::move(questions));
}

void GroupValues::add(const SplitValue& value, size_t group) {
  auto known = std::find_if(values_.begin(), values_.end(),
                            [&](const GroupsOfValue& entry) { return entry.value == value; });
  if (known == values_.end()) {
    // Values beyond the limit are told from none of the others; that they differ is known already.
    if (values_.size() == kMostListedGroups * 2) {
      ++values_.back().groups;
      return;
    }
    known = values_.insert(values_.end(), {value, 0, {}});
  }
  ++known->groups;
  if (known->first.size() < kMostListedGroups) known->first.push_back(group);
}

std::vector<GroupsOfValue> GroupValues::sorted() const {
  std::vector<GroupsOfValue> result = values_;
  std::stable_sort(
      result.begin(), result.end(),
      [](const GroupsOfValue& a, const GroupsOfValue& b) { return a.groups > b.groups; });
  return result;
}

}  // namespace workbench
