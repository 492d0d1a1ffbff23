#include "module/output/labels.h"

#include "module/output/texts.h"

namespace proportions {
namespace {

constexpr int kShowCode = 2;
/// Preference codes: by value label, or always the value itself.
constexpr int kByLabel = 2;
constexpr int kByValue = 0;

BpComposite variableLabel(const char* templateText, VarIndex variable, const BpDataValue& value) {
  BpComposite label(templateText);
  label.Add(BpVariable(variable, kShowCode));
  label.Add(value);
  label.Finish();
  return label;
}

BpComposite sideLabel(const char* templateText, const BpDataValue& value) {
  BpComposite label(templateText);
  label.Add(value);
  label.Finish();
  return label;
}

BpComposite levelsLabel(VarIndex variable, const BinInfoElem& definition, bool isString) {
  BpComposite label(texts::kValueOneOf);
  label.Add(BpVariable(variable, kShowCode));
  label.Sublist();
  if (isString) {
    for (const std::string& level : definition.stringValues) {
      label.Add(BpDataValue(variable, level, kByLabel));
    }
  } else {
    for (const double level : definition.numericValues) {
      label.Add(BpDataValue(variable, level, kByLabel));
    }
  }
  label.EndSublist();
  label.Finish();
  return label;
}

const char* cutTemplate(int side) { return side == 0 ? texts::kSideBelow : texts::kSideAtLeast; }

/// The heading of a gathered midpoint; none unless the grouping is at the midpoint.
std::optional<BpComposite> CutSideLabel(const PRPAlgorithm& analysis, const VarValue& midPoint,
                                        int side) {
  if (analysis.groupInfo.rule != kMidpoint) return std::nullopt;
  return sideLabel(cutTemplate(side),
                   BpDataValue(analysis.groupVarIndex, midPoint.numericValue, kByValue));
}

/// The label of a gathered value; none for rules whose labels do not depend on the data.
std::optional<BpComposite> ValueCategoryLabel(VarIndex variable, int32_t rule,
                                              const VarValue& value) {
  if (rule == kMidpoint) {
    return variableLabel(texts::kValueAtLeast, variable,
                         BpDataValue(variable, value.numericValue, kByValue));
  }
  if (rule != kFirst && rule != kLast) return std::nullopt;
  if (value.isString) {
    return variableLabel(texts::kValueEquals, variable,
                         BpDataValue(variable, value.stringValue, kByLabel));
  }
  return variableLabel(texts::kValueEquals, variable,
                       BpDataValue(variable, value.numericValue, kByLabel));
}

BpComposite extremeLabel(VarIndex variable, const VarCatInfo& cats, const std::string& text,
                         double number) {
  return variableLabel(texts::kValueEquals, variable,
                       cats.isString ? BpDataValue(variable, text, kByLabel)
                                     : BpDataValue(variable, number, kByLabel));
}

const ValueList* gatheredValues(const PRPAlgorithm& analysis,
                                const std::vector<ValueList> PRPAggregation::*lists,
                                int32_t position) {
  return analysis.aggregation == nullptr ? nullptr : &(analysis.aggregation->*lists)[position];
}

}  // namespace

std::optional<BpComposite> SuccessDefinitionLabel(VarIndex variable, const BinInfoElem& definition,
                                                  const VarCatInfo& cats) {
  switch (definition.rule) {
    case kFirst:
      return extremeLabel(variable, cats, cats.minString, cats.minValue);
    case kLast:
      return extremeLabel(variable, cats, cats.maxString, cats.maxValue);
    case kMidpoint:
      return variableLabel(texts::kValueAtLeast, variable,
                           BpDataValue(variable, cats.midPoint, kByValue));
    case kCutpoint:
      return variableLabel(texts::kValueAtLeast, variable,
                           BpDataValue(variable, definition.cutPoint(), kByValue));
    case kLevels:
      return levelsLabel(variable, definition, cats.isString);
    default:
      return std::nullopt;
  }
}

std::optional<BpComposite> GroupSideLabel(const PRPAlgorithm& analysis, int side) {
  const VarIndex variable = analysis.groupVarIndex;
  const BinInfoElem& definition = analysis.groupInfo;
  switch (definition.rule) {
    case kMidpoint:
      return sideLabel(cutTemplate(side),
                       BpDataValue(variable, analysis.groupCats->midPoint, kByValue));
    case kCutpoint:
      return sideLabel(cutTemplate(side), BpDataValue(variable, definition.cutPoint(), kByValue));
    case kLevels:
      return sideLabel(texts::kSideEquals,
                       analysis.groupCats->isString
                           ? BpDataValue(variable, definition.stringValues.at(side), kByLabel)
                           : BpDataValue(variable, definition.numericValues.at(side), kByLabel));
    default:
      return std::nullopt;
  }
}

void AddCutSideCategories(const PRPAlgorithm& analysis, BpGroup& dimension) {
  if (analysis.aggregation == nullptr) return;
  for (const int side : {0, 1}) {
    for (const VarValue& midPoint : analysis.aggregation->groupSet) {
      if (const auto label = CutSideLabel(analysis, midPoint, side)) dimension.Category(*label);
    }
  }
}

ListedVariable firstListVariable(const PRPAlgorithm& analysis, int32_t position) {
  return {analysis.testVarIndices[position], analysis.testVarCats[position].get(),
          &analysis.testVarInfo[position],
          gatheredValues(analysis, &PRPAggregation::firstLists, position)};
}

ListedVariable secondListVariable(const PRPAlgorithm& analysis, int32_t position) {
  if (analysis.secondVarIndices.empty()) return firstListVariable(analysis, position);
  return {analysis.secondVarIndices[position], analysis.secondVarCats[position].get(),
          &analysis.secondVarInfo[position],
          gatheredValues(analysis, &PRPAggregation::secondLists, position)};
}

void AddValueCategories(const ListedVariable& variable, BpGroup& group) {
  if (variable.gathered == nullptr) return;
  for (const VarValue& value : *variable.gathered) {
    const auto label = ValueCategoryLabel(variable.index, variable.definition->rule, value);
    if (label) group.Category(*label);
  }
}

BpCategory* addVariableRows(const ListedVariable& variable, BpGroup& group) {
  AddValueCategories(variable, group);
  const auto label = SuccessDefinitionLabel(variable.index, *variable.definition, *variable.cats);
  return label ? &group.Category(*label) : nullptr;
}

BpComposite numberLabel(const char* templateText, const BpNumber& number) {
  BpComposite label(templateText);
  label.Add(number);
  label.Finish();
  return label;
}

}  // namespace proportions
