#include "module/data/classification.h"

#include <algorithm>
#include <cstring>

#include "host/strings.h"

namespace proportions {
namespace {

void extendExtremes(double value, VarCatInfo& cats) {
  if (!cats.hasValidValue) {
    cats.minValue = cats.maxValue = value;
    cats.hasValidValue = cats.extremesKnown = true;
    return;
  }
  if (value < cats.minValue) cats.minValue = value;
  if (value > cats.maxValue) cats.maxValue = value;
}

inline void collectNumber(double value, VarCatInfo& cats) {
  // Most values lie between those seen before; none does before the first, both ends being missing.
  if (value >= cats.minValue && value <= cats.maxValue) [[likely]] {
    return;
  }
  extendExtremes(value, cats);
}

bool collatesBefore(const std::string& a, const std::string& b) {
  const size_t n = std::max(a.size(), b.size());
  return n > 0 && ZELKMBstrncoll_A(a.c_str(), b.c_str(), n) < 0;
}

void collectString(const std::string& value, VarCatInfo& cats) {
  if (!cats.hasValidValue) {
    cats.minString = cats.maxString = value;
    cats.hasValidValue = cats.extremesKnown = true;
    return;
  }
  if (collatesBefore(value, cats.minString)) cats.minString = value;
  if (collatesBefore(cats.maxString, value)) cats.maxString = value;
}

/// Sets what numbers are successes by the rule and what the first pass found. A missing reference
/// (no valid value anywhere, or no cut point given) compares with nothing.
void setSuccesses(CaseVariable& variable) {
  const VarCatInfo& cats = *variable.cats;
  const BinInfoElem& info = *variable.info;
  const auto exactly = [&variable](double value) { variable.low = variable.high = value; };
  const auto from = [&variable](double reference) {
    if (isMissing(reference)) return;
    variable.low = reference;
    variable.high = std::numeric_limits<double>::infinity();
  };
  switch (info.rule) {
    case kFirst:
      return exactly(cats.minValue);
    case kLast:
      return exactly(cats.maxValue);
    case kMidpoint:
      return from(cats.midPoint);
    case kCutpoint:
      return from(info.cutPoint());
    case kLevels:
      if (info.numericValues.size() == 1) return exactly(info.numericValues.front());
      variable.levels = &info.numericValues;
      return;
    default:
      return;
  }
}

bool liesWithin(double value, const CaseVariable& variable) {
  // Both comparisons are made, so that the compiler needs no jump between them.
  return static_cast<bool>(static_cast<int>(value >= variable.low) &
                           static_cast<int>(value <= variable.high));
}

bool numberSucceeds(double value, const CaseVariable& variable) {
  if (variable.levels == nullptr) return liesWithin(value, variable);
  return std::find(variable.levels->begin(), variable.levels->end(), value) !=
         variable.levels->end();
}

bool stringSucceeds(const std::string& value, const VarCatInfo& cats, const BinInfoElem& info) {
  switch (info.rule) {
    case kFirst:
      return cats.extremesKnown && value == cats.minString;
    case kLast:
      return cats.extremesKnown && value == cats.maxString;
    case kLevels:
      return std::find(info.stringValues.begin(), info.stringValues.end(), value) !=
             info.stringValues.end();
    default:
      return false;
  }
}

template <typename List, typename Value>
int32_t positionOf(const List& list, const Value& value) {
  const auto found = std::find(list.begin(), list.end(), value);
  return found == list.end() ? kNotCounted : static_cast<int32_t>(found - list.begin());
}

int32_t sideOf(double value, double reference) {
  if (isMissing(reference)) return kNotCounted;
  return value >= reference ? 1 : 0;
}

}  // namespace

Classifier::Classifier(PRPAlgorithm& analysis)
    : analysis_(analysis),
      collecting_(analysis.initialDataPass),
      userMissingIncluded_(analysis.userMissingIncluded) {
  for (size_t i = 0; i < analysis.testVarIndices.size(); ++i) {
    add(first_, analysis.testVarIndices[i], analysis.testVarCats[i].get(), analysis.testVarInfo[i]);
  }
  for (size_t i = 0; i < analysis.secondVarIndices.size(); ++i) {
    add(second_, analysis.secondVarIndices[i], analysis.secondVarCats[i].get(),
        analysis.secondVarInfo[i]);
  }
  if (analysis.groupVarIndex >= 0) {
    add(group_, analysis.groupVarIndex, analysis.groupCats.get(), analysis.groupInfo);
  }
}

void Classifier::add(CaseVariables& list, VarIndex index, VarCatInfo* cats,
                     const BinInfoElem& info) {
  CaseVariable variable{index, cats->isString, &analysis_.dataSource->GetVariable(index), cats,
                        &info};
  if (!variable.isString) setSuccesses(variable);
  list.plain = list.plain && !variable.isString && variable.levels == nullptr &&
               (userMissingIncluded_ || !variable.variable->HasUserMissing());
  list.variables.push_back(variable);
}

inline Classifier::Number Classifier::fetchNumeric(const Case& data,
                                                   const CaseVariable& variable) const {
  const double value = data.Number(variable.index);
  if (userMissingIncluded_) return {value, isMissing(value)};
  return {value, variable.variable->IsMissing(&value)};
}

bool Classifier::fetchString(const Case& data, const CaseVariable& variable) {
  const double* words = data.Obs(variable.index);
  if (!userMissingIncluded_ && variable.variable->IsMissing(words)) return true;
  const auto width = static_cast<size_t>(variable.variable->GetType());
  text_.resize(width + 1);
  std::memcpy(text_.data(), words, width);
  text_[width] = '\0';
  ZELKMBstrtrim_A(text_.data());
  if (analysis_.ignoreCase) {
    // The direction of folding follows the print option, so that the printed categories read as
    // folded.
    analysis_.printUpperCase ? ZELKMBstrupr_A(text_.data()) : ZELKMBstrlwr_A(text_.data());
  }
  text_.resize(std::strlen(text_.c_str()));
  return false;
}

bool Classifier::observationIsMissing(const Case& data, const CaseVariable& variable) const {
  if (!variable.isString) return fetchNumeric(data, variable).missing;
  return !userMissingIncluded_ && variable.variable->IsMissing(data.Obs(variable.index));
}

bool Classifier::noneIsMissing(const Case& data, const CaseVariables& list) const {
  return std::none_of(
      list.variables.begin(), list.variables.end(),
      [&](const CaseVariable& variable) { return observationIsMissing(data, variable); });
}

Code Classifier::classifyString(const Case& data, const CaseVariable& variable) {
  if (fetchString(data, variable)) return kNotCounted;
  if (collecting_) {
    collectString(text_, *variable.cats);
    return kNotCounted;
  }
  return stringSucceeds(text_, *variable.cats, *variable.info) ? 1 : 0;
}

/// The case is a copy, which stays in registers: the codes are bytes, and writing them might change
/// anything that lies in memory.
template <bool kCollecting>
inline bool Classifier::classifyPlain(const Case data, const CaseVariables& list,
                                      Code* code) const {
  bool complete = !kCollecting;
  const CaseVariable* const end = list.variables.data() + list.variables.size();
  for (const CaseVariable* variable = list.variables.data(); variable != end; ++variable, ++code) {
    const double value = data.Number(variable->index);
    if (isMissing(value)) {
      complete = false;
      *code = kNotCounted;
    } else if constexpr (kCollecting) {
      collectNumber(value, *variable->cats);
      *code = kNotCounted;
    } else {
      *code = liesWithin(value, *variable) ? 1 : 0;
    }
  }
  return complete;
}

Code Classifier::classifyValue(const Case& data, const CaseVariable& variable) {
  if (variable.isString) return classifyString(data, variable);
  const auto [value, missing] = fetchNumeric(data, variable);
  if (missing) return kNotCounted;
  if (collecting_) {
    collectNumber(value, *variable.cats);
    return kNotCounted;
  }
  return numberSucceeds(value, variable) ? 1 : 0;
}

[[gnu::noinline]] int32_t Classifier::classifyGroup(const Case& data) {
  const CaseVariable& variable = group_.variables.front();
  const BinInfoElem& info = *variable.info;
  if (!variable.isString) {
    const auto [value, missing] = fetchNumeric(data, variable);
    if (missing) return kNotCounted;
    if (collecting_) {
      collectNumber(value, *variable.cats);
      return kNotCounted;
    }
    if (info.rule == kMidpoint) return sideOf(value, variable.cats->midPoint);
    if (info.rule == kCutpoint) return sideOf(value, info.cutPoint());
    return info.rule == kLevels ? positionOf(info.numericValues, value) : kNotCounted;
  }
  if (fetchString(data, variable)) return kNotCounted;
  if (collecting_) {
    collectString(text_, *variable.cats);
    return kNotCounted;
  }
  return info.rule == kLevels ? positionOf(info.stringValues, text_) : kNotCounted;
}

[[gnu::noinline]] bool Classifier::classifyEach(const Case& data, const CaseVariables& list,
                                                Code* code) {
  bool complete = true;
  for (const CaseVariable& variable : list.variables) {
    *code = classifyValue(data, variable);
    complete = complete && *code != kNotCounted;
    ++code;
  }
  return complete;
}

template <bool kCollecting>
inline bool Classifier::classifyList(const Case& data, const CaseVariables& list,
                                     std::vector<Code>& codes) {
  if (list.variables.empty()) return true;
  return list.plain ? classifyPlain<kCollecting>(data, list, codes.data())
                    : classifyEach(data, list, codes.data());
}

bool Classifier::classifyCase(const Case& data, std::vector<Code>& first, std::vector<Code>& second,
                              int32_t& group) {
  if (first.size() != first_.variables.size() || second.size() != second_.variables.size()) {
    first.resize(first_.variables.size());
    second.resize(second_.variables.size());
  }
  const bool grouped = !group_.variables.empty();
  group = grouped ? classifyGroup(data) : kNotCounted;
  // Every list is classified, usable or not: the first pass collects from all of them.
  if (collecting_) {
    classifyList<true>(data, first_, first);
    classifyList<true>(data, second_, second);
    return true;
  }
  bool usable = !grouped || group >= 0;
  usable &= classifyList<false>(data, first_, first);
  usable &= classifyList<false>(data, second_, second);
  return usable || analysis_.scopeAnalysis;
}

}  // namespace proportions
