/// The variables that a pass reads, and how their values are fetched from a case.
#pragma once

#include <string>
#include <vector>

#include "host/data_source.h"
#include "module/model/algorithm.h"
#include "module/model/success_rule.h"

namespace proportions {

/// A variable with everything that its values are held against, looked up once per pass and not
/// once per case.
struct CaseVariable {
  VarIndex index;
  bool isString;
  const ZELK_Variable* variable;
  VarCatInfo* cats;
  const BinInfoElem* info;
  const SuccessRuleRow* rule;  ///< of `info`; null for an unknown one
};

/// The variables of one list.
struct CaseVariables {
  std::vector<CaseVariable> variables;
  /// All are numeric and have no missing value but the system-missing one: the usual list, with
  /// the shortest way to a value.
  bool plain = true;
};

/// The lists of one analysis object, valid as long as its category records are.
class CaseValues {
 public:
  struct Number {
    double value;
    bool missing;
  };

  explicit CaseValues(PRPAlgorithm& analysis);

  const CaseVariables& first() const { return first_; }
  const CaseVariables& second() const { return second_; }
  /// Empty or one variable.
  const CaseVariables& group() const { return group_; }

  Number fetchNumeric(const Case& data, const CaseVariable& variable) const {
    const double value = data.Number(variable.index);
    if (userMissingIncluded_) return {value, IsSystemMissing(value)};
    return {value, variable.variable->IsMissing(&value)};
  }
  /// The trimmed value; null when it is missing. Valid until the next call.
  const std::string* fetchString(const Case& data, const CaseVariable& variable);

  /// True when the case counts by the listwise rule; always true under analysis-wise exclusion.
  bool caseIsComplete(const Case& data) const {
    return scopeAnalysis_ || (noneIsMissing(data, group_) && noneIsMissing(data, first_) &&
                              noneIsMissing(data, second_));
  }

 private:
  void add(CaseVariables& list, VarIndex index, VarCatInfo& cats, const BinInfoElem& info);
  bool observationIsMissing(const Case& data, const CaseVariable& variable) const;
  bool noneIsMissing(const Case& data, const CaseVariables& list) const;

  const ProcedureDataSource& source_;
  const bool scopeAnalysis_;
  const bool userMissingIncluded_;
  const bool ignoreCase_;
  const bool printUpperCase_;
  CaseVariables first_;
  CaseVariables second_;
  CaseVariables group_;
  std::string text_;  ///< the string value at hand
};

}  // namespace proportions
