/// What a case's values are: successes, failures or not counted; and on which side of the grouping
/// it stands.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "host/data_source.h"
#include "module/driver/algorithm.h"

namespace proportions {

/// 1 success (or second group), 0 failure (or first group), -1 not counted.
using Code = int8_t;
inline constexpr Code kNotCounted = -1;

/// A variable with everything that its classification needs, looked up once per pass and not once
/// per case.
struct CaseVariable {
  VarIndex index;
  bool isString;
  const ZELK_Variable* variable;
  VarCatInfo* cats;
  const BinInfoElem* info;
  /// Numbers from `low` to `high` are successes, or those among `levels` where there are any: one
  /// comparison whatever the rule, without a jump that depends on the data. Of the second pass.
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();
  const std::vector<double>* levels = nullptr;
};

/// The variables of one list.
struct CaseVariables {
  std::vector<CaseVariable> variables;
  /// All are numbers that only the system-missing value can be missing of and whose successes lie
  /// in one range: the usual list, with the shortest way from value to code.
  bool plain = true;
};

/// Classifies the cases of one analysis object. During the first pass it collects extremes instead,
/// and every code is kNotCounted. Made for one pass, when the object's category records hold what
/// that pass goes by; valid as long as they are.
class Classifier {
 public:
  explicit Classifier(PRPAlgorithm& analysis);

  /// True when the case counts by the listwise rule; always true under analysis-wise exclusion.
  bool caseIsComplete(const Case& data) const {
    return analysis_.scopeAnalysis || (noneIsMissing(data, group_) && noneIsMissing(data, first_) &&
                                       noneIsMissing(data, second_));
  }
  /// Fills the code lists, resized to the variable lists, and the group code (kNotCounted without a
  /// grouping variable). True when the case is used.
  bool classifyCase(const Case& data, std::vector<Code>& first, std::vector<Code>& second,
                    int32_t& group);

 private:
  struct Number {
    double value;
    bool missing;
  };
  Number fetchNumeric(const Case& data, const CaseVariable& variable) const;
  /// Normalises into `text_`; true when missing.
  bool fetchString(const Case& data, const CaseVariable& variable);
  bool observationIsMissing(const Case& data, const CaseVariable& variable) const;
  bool noneIsMissing(const Case& data, const CaseVariables& list) const;
  template <bool kCollecting>
  bool classifyPlain(Case data, const CaseVariables& list, Code* code) const;
  Code classifyValue(const Case& data, const CaseVariable& variable);
  Code classifyString(const Case& data, const CaseVariable& variable);
  int32_t classifyGroup(const Case& data);
  bool classifyEach(const Case& data, const CaseVariables& list, Code* code);
  template <bool kCollecting>
  bool classifyList(const Case& data, const CaseVariables& list, std::vector<Code>& codes);
  void add(CaseVariables& list, VarIndex index, VarCatInfo* cats, const BinInfoElem& info);

  const PRPAlgorithm& analysis_;
  const bool collecting_;  ///< this is the first pass
  const bool userMissingIncluded_;
  CaseVariables first_;
  CaseVariables second_;
  CaseVariables group_;  ///< empty or one
  std::string text_;     ///< the string value at hand
};

}  // namespace proportions
