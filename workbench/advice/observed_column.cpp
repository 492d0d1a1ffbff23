#include "workbench/advice/observed_column.h"

#include <algorithm>
#include <utility>

namespace workbench {

std::unique_ptr<ObservedColumn> observeColumn(const Variable& variable, ColumnQuestions questions) {
  return variable.isString() ? observeTexts(variable, std::move(questions))
                             : observeNumbers(variable, std::move(questions));
}

void GroupValues::add(const SplitValue& value, size_t group) {
  std::vector<GroupsOfValue>& values = found_.values;
  if (values.empty() || compareSplitValues(value, found_.lowest) < 0) found_.lowest = value;
  if (values.empty() || compareSplitValues(value, found_.highest) > 0) found_.highest = value;
  auto known = std::find_if(values.begin(), values.end(),
                            [&](const GroupsOfValue& entry) { return entry.value == value; });
  if (known == values.end()) {
    if (values.size() == kMostListedGroups * 2) {
      ++found_.otherGroups;
      return;
    }
    known = values.insert(values.end(), {value, 0, {}});
  }
  ++known->groups;
  if (known->first.size() < kMostListedGroups) known->first.push_back(group);
}

GroupsByValue GroupValues::found() const {
  GroupsByValue result = found_;
  std::stable_sort(
      result.values.begin(), result.values.end(),
      [](const GroupsOfValue& a, const GroupsOfValue& b) { return a.groups > b.groups; });
  return result;
}

}  // namespace workbench
