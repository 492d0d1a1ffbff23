/// What a case's values are: successes, failures or not counted; and on which side of the grouping
/// it stands.
#pragma once

#include <cstdint>
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
  const ZELK_Variable* variable;
  VarCatInfo* cats;
  const BinInfoElem* info;
};

/// Classifies the cases of one analysis object. During the first pass it collects extremes instead,
/// and every code is kNotCounted. Made after the object's category records; valid as long as they
/// are.
class Classifier {
 public:
  explicit Classifier(PRPAlgorithm& analysis);

  /// True when the case counts by the listwise rule; always true under analysis-wise exclusion.
  bool caseIsComplete(const Case& data) const;
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
  Code classifyValue(const Case& data, const CaseVariable& variable);
  int32_t classifyGroup(const Case& data);
  bool classifyList(const Case& data, const std::vector<CaseVariable>& list,
                    std::vector<Code>& codes);

  PRPAlgorithm& analysis_;
  std::vector<CaseVariable> first_;
  std::vector<CaseVariable> second_;
  std::vector<CaseVariable> group_;  ///< empty or one
  std::string text_;                 ///< the string value at hand
};

}  // namespace proportions
