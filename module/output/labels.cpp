#include "module/output/labels.h"

#include "module/model/success_rule.h"
#include "module/model/texts.h"

namespace proportions {
namespace {

BpDataValue dataValue(VarIndex variable, const VarValue& value, int preference) {
  return value.isString ? BpDataValue(variable, value.stringValue, preference)
                        : BpDataValue(variable, value.numericValue, preference);
}

/// The one label of a variable held against a value: a gathered value's row and the success row of
/// the same value are the same category. Cut points and midpoints are always shown as numbers.
BpComposite valueLabel(VarIndex variable, const SuccessRuleRow& rule, const VarValue& value) {
  BpComposite label(rule.label);
  label.Add(BpVariable(variable, kShowLabelElseName));
  if (rule.comparison == Comparison::kAtLeast) {
    label.Add(BpDataValue(variable, value.numericValue, kPreferValue));
  } else {
    label.Add(dataValue(variable, value, kPreferValueLabel));
  }
  label.Finish();
  return label;
}

BpComposite levelsLabel(VarIndex variable, const SuccessRuleRow& rule,
                        const BinInfoElem& definition, const VarCatInfo& cats) {
  BpComposite label(rule.label);
  label.Add(BpVariable(variable, kShowLabelElseName));
  label.Sublist();
  if (cats.isString) {
    for (const std::string& level : definition.stringValues) {
      label.Add(BpDataValue(variable, level, kPreferValueLabel));
    }
  } else {
    for (const double level : definition.numericValues) {
      label.Add(BpDataValue(variable, level, kPreferValueLabel));
    }
  }
  label.EndSublist();
  label.Finish();
  return label;
}

BpComposite sideLabel(const char* templateText, const BpDataValue& value) {
  BpComposite label(templateText);
  label.Add(value);
  label.Finish();
  return label;
}

/// The heading of a side of a cut, the grouping's own or a gathered one.
BpComposite cutSideLabel(VarIndex variable, double cut, int side) {
  return sideLabel(side == 0 ? texts::kSideBelow : texts::kSideAtLeast,
                   BpDataValue(variable, cut, kPreferValue));
}

}  // namespace

std::optional<BpComposite> SuccessDefinitionLabel(VarIndex variable, const BinInfoElem& definition,
                                                  const VarCatInfo& cats) {
  const SuccessRuleRow* rule = findRule(definition.rule);
  if (rule == nullptr) return std::nullopt;
  if (rule->comparison == Comparison::kOneOf) {
    return levelsLabel(variable, *rule, definition, cats);
  }
  return valueLabel(variable, *rule, referenceValue(*rule, definition, cats));
}

std::optional<BpComposite> GroupSideLabel(const Grouping& grouping, int side) {
  const BinInfoElem& definition = grouping.definition;
  const SuccessRuleRow* rule = findRule(definition.rule);
  if (rule == nullptr || rule->comparison == Comparison::kEquals) return std::nullopt;
  if (rule->comparison == Comparison::kAtLeast) {
    return cutSideLabel(grouping.index, referenceNumber(*rule, definition, grouping.cats), side);
  }
  const auto level = static_cast<size_t>(side);
  return sideLabel(
      texts::kSideEquals,
      grouping.cats.isString
          ? BpDataValue(grouping.index, definition.stringValues.at(level), kPreferValueLabel)
          : BpDataValue(grouping.index, definition.numericValues.at(level), kPreferValueLabel));
}

void AddCutSideCategories(const Grouping& grouping, BpGroup& dimension) {
  if (grouping.midPoints == nullptr || grouping.definition.rule != SuccessRule::kMidpoint) return;
  for (const int side : {0, 1}) {
    for (const VarValue& midPoint : grouping.midPoints->list()) {
      dimension.Category(cutSideLabel(grouping.index, midPoint.numericValue, side));
    }
  }
}

void AddValueCategories(const ListedVariable& variable, BpGroup& group) {
  const SuccessRuleRow* rule = findRule(variable.definition.rule);
  if (variable.gathered == nullptr || rule == nullptr || !rule->dependsOnData()) return;
  for (const VarValue& value : variable.gathered->list()) {
    group.Category(valueLabel(variable.index, *rule, value));
  }
}

void AddVariableRows(const ListedVariable& variable, BpGroup& group) {
  AddValueCategories(variable, group);
  const auto label = SuccessDefinitionLabel(variable.index, variable.definition, variable.cats);
  if (label) group.Category(*label);
}

BpComposite NumberLabel(const char* templateText, const BpNumber& number) {
  BpComposite label(templateText);
  label.Add(number);
  label.Finish();
  return label;
}

}  // namespace proportions
