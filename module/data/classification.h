/// The second pass: what a case's values are, successes, failures or not counted; and on which side
/// of the grouping it stands.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "module/data/case_values.h"

namespace proportions {

/// Classifies the cases of one analysis object, by what its category records held when this was
/// made. Plain lists of numbers with one range each take the shortest way from value to code;
/// bench/classification_bench.cpp measures it.
class Classifier {
 public:
  explicit Classifier(CaseValues& values, bool scopeAnalysis);

  /// Fills the code lists, resized to the variable lists, and the group code (kNotCounted without a
  /// grouping variable). True when the case is used.
  bool classifyCase(const Case& data, std::vector<Code>& first, std::vector<Code>& second,
                    int32_t& group);

 private:
  /// Numbers from `low` to `high` are successes, or the numbers of `levels` where it is set: one
  /// comparison whatever the rule, without a branch that depends on the data.
  struct Successes {
    VarIndex index;
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    const BinInfoElem* levels = nullptr;
  };
  struct List {
    const CaseVariables& variables;
    std::vector<Successes> successes;  ///< parallel to the variables
    bool plain;                        ///< every success lies in a range
  };

  static List listOf(const CaseVariables& variables);
  static Successes successesOf(const CaseVariable& variable);
  static bool classifyPlain(Case data, const List& list, Code* code);
  bool classifyEach(const Case& data, const List& list, Code* code);
  bool classifyList(const Case& data, const List& list, std::vector<Code>& codes);
  Code classifyValue(const Case& data, const CaseVariable& variable, const Successes& successes);
  int32_t classifyGroup(const Case& data, const CaseVariable& variable);

  CaseValues& values_;
  const bool scopeAnalysis_;
  List first_;
  List second_;
};

}  // namespace proportions
