#include "module/data/classification.h"

#include <algorithm>

namespace proportions {
namespace {

template <typename Range>
bool liesWithin(double value, const Range& range) {
  // Both comparisons are made, so that the compiler needs no branch between them.
  return static_cast<bool>(static_cast<int>(value >= range.low) &
                           static_cast<int>(value <= range.high));
}

bool stringSucceeds(const std::string& value, const CaseVariable& variable) {
  const SuccessRuleRow* rule = variable.rule;
  if (rule == nullptr) return false;
  if (rule->comparison == Comparison::kOneOf) return variable.info->hasText(value);
  const VarCatInfo& cats = *variable.cats;
  return rule->text != nullptr && cats.extremesKnown && value == cats.*rule->text;
}

template <typename Value>
int32_t positionOf(const std::vector<Value>& list, const Value& value) {
  const auto found = std::find(list.begin(), list.end(), value);
  return found == list.end() ? kNotCounted : static_cast<int32_t>(found - list.begin());
}

int32_t sideOf(double value, double reference) {
  if (IsSystemMissing(reference)) return kNotCounted;
  return value >= reference ? 1 : 0;
}

}  // namespace

Classifier::Classifier(CaseValues& values, bool scopeAnalysis)
    : values_(values),
      scopeAnalysis_(scopeAnalysis),
      first_(listOf(values.first())),
      second_(listOf(values.second())) {}

Classifier::List Classifier::listOf(const CaseVariables& variables) {
  List list{variables, {}, variables.plain};
  for (const CaseVariable& variable : variables.variables) {
    list.successes.push_back(successesOf(variable));
    list.plain = list.plain && list.successes.back().levels == nullptr;
  }
  return list;
}

/// What numbers are successes by the rule and what the first pass found. A missing reference (no
/// valid value anywhere, or no cut point given) compares with nothing.
Classifier::Successes Classifier::successesOf(const CaseVariable& variable) {
  Successes successes{variable.index};
  const BinInfoElem& info = *variable.info;
  const SuccessRuleRow* rule = variable.rule;
  if (variable.isString || rule == nullptr) return successes;
  if (rule->comparison == Comparison::kOneOf) {
    if (info.numericValues.size() != 1) {
      successes.levels = &info;
    } else {
      successes.low = successes.high = info.numericValues.front();
    }
    return successes;
  }
  const double reference = referenceNumber(*rule, info, *variable.cats);
  if (rule->comparison == Comparison::kEquals) {
    successes.low = successes.high = reference;
  } else if (!IsSystemMissing(reference)) {
    successes.low = reference;
    successes.high = std::numeric_limits<double>::infinity();
  }
  return successes;
}

/// The case is a copy, which stays in registers: the codes are bytes, and writing them might change
/// anything that lies in memory.
inline bool Classifier::classifyPlain(const Case data, const List& list, Code* code) {
  bool complete = true;
  const Successes* const end = list.successes.data() + list.successes.size();
  for (const Successes* variable = list.successes.data(); variable != end; ++variable, ++code) {
    const double value = data.Number(variable->index);
    if (IsSystemMissing(value)) {
      complete = false;
      *code = kNotCounted;
    } else {
      *code = liesWithin(value, *variable) ? 1 : 0;
    }
  }
  return complete;
}

Code Classifier::classifyValue(const Case& data, const CaseVariable& variable,
                               const Successes& successes) {
  if (variable.isString) {
    const std::string* text = values_.fetchString(data, variable);
    if (text == nullptr) return kNotCounted;
    return stringSucceeds(*text, variable) ? 1 : 0;
  }
  const auto [value, missing] = values_.fetchNumeric(data, variable);
  if (missing) return kNotCounted;
  const bool succeeds = successes.levels == nullptr ? liesWithin(value, successes)
                                                    : successes.levels->hasNumber(value);
  return succeeds ? 1 : 0;
}

[[gnu::noinline]] int32_t Classifier::classifyGroup(const Case& data,
                                                    const CaseVariable& variable) {
  const BinInfoElem& info = *variable.info;
  const SuccessRuleRow* rule = variable.rule;
  if (variable.isString) {
    const std::string* text = values_.fetchString(data, variable);
    const bool byLevel = rule != nullptr && rule->comparison == Comparison::kOneOf;
    return text != nullptr && byLevel ? positionOf(info.stringValues, *text) : kNotCounted;
  }
  const auto [value, missing] = values_.fetchNumeric(data, variable);
  if (missing || rule == nullptr) return kNotCounted;
  switch (rule->comparison) {
    case Comparison::kAtLeast:
      return sideOf(value, referenceNumber(*rule, info, *variable.cats));
    case Comparison::kOneOf:
      return positionOf(info.numericValues, value);
    case Comparison::kEquals:
      return kNotCounted;
  }
  return kNotCounted;
}

[[gnu::noinline]] bool Classifier::classifyEach(const Case& data, const List& list, Code* code) {
  bool complete = true;
  for (size_t i = 0; i < list.successes.size(); ++i) {
    code[i] = classifyValue(data, list.variables.variables[i], list.successes[i]);
    complete = complete && code[i] != kNotCounted;
  }
  return complete;
}

inline bool Classifier::classifyList(const Case& data, const List& list, std::vector<Code>& codes) {
  if (list.successes.empty()) return true;
  return list.plain ? classifyPlain(data, list, codes.data())
                    : classifyEach(data, list, codes.data());
}

bool Classifier::classifyCase(const Case& data, std::vector<Code>& first, std::vector<Code>& second,
                              int32_t& group) {
  if (first.size() != first_.successes.size() || second.size() != second_.successes.size()) {
    first.resize(first_.successes.size());
    second.resize(second_.successes.size());
  }
  const auto& grouping = values_.group().variables;
  group = grouping.empty() ? kNotCounted : classifyGroup(data, grouping.front());
  bool usable = grouping.empty() || group >= 0;
  usable &= classifyList(data, first_, first);
  usable &= classifyList(data, second_, second);
  return usable || scopeAnalysis_;
}

}  // namespace proportions
