#include "module/data/case_values.h"

#include <algorithm>
#include <cstring>

#include "host/strings.h"

namespace proportions {

CaseValues::CaseValues(PRPAlgorithm& analysis)
    : source_(*analysis.dataSource),
      scopeAnalysis_(analysis.settings.scopeAnalysis),
      userMissingIncluded_(analysis.settings.userMissingIncluded),
      ignoreCase_(analysis.settings.ignoreCase),
      printUpperCase_(analysis.settings.printUpperCase) {
  const CommandSettings& settings = analysis.settings;
  for (size_t i = 0; i < settings.testVarIndices.size(); ++i) {
    add(first_, settings.testVarIndices[i], *analysis.testVarCats[i], settings.testVarInfo[i]);
  }
  for (size_t i = 0; i < settings.secondVarIndices.size(); ++i) {
    add(second_, settings.secondVarIndices[i], *analysis.secondVarCats[i],
        settings.secondVarInfo[i]);
  }
  if (settings.groupVarIndex >= 0) {
    add(group_, settings.groupVarIndex, *analysis.groupCats, settings.groupInfo);
  }
}

void CaseValues::add(CaseVariables& list, VarIndex index, VarCatInfo& cats,
                     const BinInfoElem& info) {
  const ZELK_Variable& variable = source_.GetVariable(index);
  list.plain = list.plain && !cats.isString && (userMissingIncluded_ || !variable.HasUserMissing());
  list.variables.push_back({index, cats.isString, &variable, &cats, &info, findRule(info.rule)});
}

const std::string* CaseValues::fetchString(const Case& data, const CaseVariable& variable) {
  const double* words = data.Obs(variable.index);
  if (!userMissingIncluded_ && variable.variable->IsMissing(words)) return nullptr;
  const auto width = static_cast<size_t>(variable.variable->GetType());
  text_.resize(width + 1);
  std::memcpy(text_.data(), words, width);
  text_[width] = '\0';
  ZELKMBstrtrim_A(text_.data());
  if (ignoreCase_) {
    // The direction of folding follows the print option, so that the printed categories read as
    // folded.
    printUpperCase_ ? ZELKMBstrupr_A(text_.data()) : ZELKMBstrlwr_A(text_.data());
  }
  text_.resize(std::strlen(text_.c_str()));
  return &text_;
}

bool CaseValues::observationIsMissing(const Case& data, const CaseVariable& variable) const {
  if (!variable.isString) return fetchNumeric(data, variable).missing;
  return !userMissingIncluded_ && variable.variable->IsMissing(data.Obs(variable.index));
}

bool CaseValues::noneIsMissing(const Case& data, const CaseVariables& list) const {
  return std::none_of(
      list.variables.begin(), list.variables.end(),
      [&](const CaseVariable& variable) { return observationIsMissing(data, variable); });
}

}  // namespace proportions
