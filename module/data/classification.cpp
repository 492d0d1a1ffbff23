#include "module/data/classification.h"

#include <algorithm>
#include <cstring>

#include "host/strings.h"

namespace proportions {
namespace {

CaseVariable caseVariable(const PRPAlgorithm& analysis, VarIndex index, VarCatInfo* cats,
                          const BinInfoElem& info) {
  return {index, &analysis.dataSource->GetVariable(index), cats, &info};
}

void collectNumber(double value, VarCatInfo& cats) {
  if (!cats.hasValidValue) {
    cats.minValue = cats.maxValue = value;
    cats.hasValidValue = true;
    return;
  }
  if (value < cats.minValue) cats.minValue = value;
  if (value > cats.maxValue) cats.maxValue = value;
}

bool collatesBefore(const std::string& a, const std::string& b) {
  const size_t n = std::max(a.size(), b.size());
  return n > 0 && ZELKMBstrncoll_A(a.c_str(), b.c_str(), n) < 0;
}

void collectString(const std::string& value, VarCatInfo& cats) {
  if (!cats.hasValidValue) {
    cats.minString = cats.maxString = value;
    cats.hasValidValue = true;
    return;
  }
  if (collatesBefore(value, cats.minString)) cats.minString = value;
  if (collatesBefore(cats.maxString, value)) cats.maxString = value;
}

/// A missing reference (no valid value anywhere, or no cut point given) compares with nothing.
bool reaches(double value, double reference) { return !isMissing(reference) && value >= reference; }

bool numberSucceeds(double value, const VarCatInfo& cats, const BinInfoElem& info) {
  switch (info.rule) {
    case kFirst:
      return value == cats.minValue;
    case kLast:
      return value == cats.maxValue;
    case kMidpoint:
      return reaches(value, cats.midPoint);
    case kCutpoint:
      return reaches(value, info.cutPoint());
    case kLevels:
      return std::find(info.numericValues.begin(), info.numericValues.end(), value) !=
             info.numericValues.end();
    default:
      return false;
  }
}

bool stringSucceeds(const std::string& value, const VarCatInfo& cats, const BinInfoElem& info) {
  switch (info.rule) {
    case kFirst:
      return cats.hasValidValue && value == cats.minString;
    case kLast:
      return cats.hasValidValue && value == cats.maxString;
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

Classifier::Classifier(PRPAlgorithm& analysis) : analysis_(analysis) {
  for (size_t i = 0; i < analysis.testVarIndices.size(); ++i) {
    first_.push_back(caseVariable(analysis, analysis.testVarIndices[i],
                                  analysis.testVarCats[i].get(), analysis.testVarInfo[i]));
  }
  for (size_t i = 0; i < analysis.secondVarIndices.size(); ++i) {
    second_.push_back(caseVariable(analysis, analysis.secondVarIndices[i],
                                   analysis.secondVarCats[i].get(), analysis.secondVarInfo[i]));
  }
  if (analysis.groupVarIndex >= 0) {
    group_.push_back(caseVariable(analysis, analysis.groupVarIndex, analysis.groupCats.get(),
                                  analysis.groupInfo));
  }
}

Classifier::Number Classifier::fetchNumeric(const Case& data, const CaseVariable& variable) const {
  const double value = *data.Obs(variable.index);
  if (analysis_.userMissingIncluded) return {value, isMissing(value)};
  return {value, variable.variable->IsMissing(&value)};
}

bool Classifier::fetchString(const Case& data, const CaseVariable& variable) {
  const double* words = data.Obs(variable.index);
  if (!analysis_.userMissingIncluded && variable.variable->IsMissing(words)) return true;
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
  if (!variable.cats->isString) return fetchNumeric(data, variable).missing;
  return !analysis_.userMissingIncluded && variable.variable->IsMissing(data.Obs(variable.index));
}

bool Classifier::caseIsComplete(const Case& data) const {
  if (analysis_.scopeAnalysis) return true;
  for (const std::vector<CaseVariable>* list : {&group_, &first_, &second_}) {
    for (const CaseVariable& variable : *list) {
      if (observationIsMissing(data, variable)) return false;
    }
  }
  return true;
}

Code Classifier::classifyValue(const Case& data, const CaseVariable& variable) {
  if (!variable.cats->isString) {
    const auto [value, missing] = fetchNumeric(data, variable);
    if (missing) return kNotCounted;
    if (analysis_.initialDataPass) {
      collectNumber(value, *variable.cats);
      return kNotCounted;
    }
    return numberSucceeds(value, *variable.cats, *variable.info) ? 1 : 0;
  }
  if (fetchString(data, variable)) return kNotCounted;
  if (analysis_.initialDataPass) {
    collectString(text_, *variable.cats);
    return kNotCounted;
  }
  return stringSucceeds(text_, *variable.cats, *variable.info) ? 1 : 0;
}

int32_t Classifier::classifyGroup(const Case& data) {
  const CaseVariable& variable = group_.front();
  const BinInfoElem& info = *variable.info;
  if (!variable.cats->isString) {
    const auto [value, missing] = fetchNumeric(data, variable);
    if (missing) return kNotCounted;
    if (analysis_.initialDataPass) {
      collectNumber(value, *variable.cats);
      return kNotCounted;
    }
    if (info.rule == kMidpoint) return sideOf(value, variable.cats->midPoint);
    if (info.rule == kCutpoint) return sideOf(value, info.cutPoint());
    return info.rule == kLevels ? positionOf(info.numericValues, value) : kNotCounted;
  }
  if (fetchString(data, variable)) return kNotCounted;
  if (analysis_.initialDataPass) {
    collectString(text_, *variable.cats);
    return kNotCounted;
  }
  return info.rule == kLevels ? positionOf(info.stringValues, text_) : kNotCounted;
}

bool Classifier::classifyList(const Case& data, const std::vector<CaseVariable>& list,
                              std::vector<Code>& codes) {
  codes.resize(list.size());
  bool allCounted = true;
  for (size_t i = 0; i < list.size(); ++i) {
    codes[i] = classifyValue(data, list[i]);
    allCounted &= codes[i] >= 0;
  }
  return allCounted;
}

bool Classifier::classifyCase(const Case& data, std::vector<Code>& first, std::vector<Code>& second,
                              int32_t& group) {
  group = group_.empty() ? kNotCounted : classifyGroup(data);
  bool usable = group_.empty() || group >= 0;
  // Every list is classified, usable or not: the first pass collects from all of them.
  usable &= classifyList(data, first_, first);
  usable &= classifyList(data, second_, second);
  return analysis_.initialDataPass || usable || analysis_.scopeAnalysis;
}

}  // namespace proportions
