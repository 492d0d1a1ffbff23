/// The success rules: one table for the syntax, the classification, the labels and the dumps.
#pragma once

#include <array>
#include <string>

#include "module/model/bin_info_elem.h"
#include "module/model/gathered_values.h"
#include "module/model/keywords.h"
#include "module/model/texts.h"
#include "module/model/var_cat_info.h"

namespace proportions {

/// How a value is held against the rule's reference.
enum class Comparison { kEquals, kAtLeast, kOneOf };

struct SuccessRuleRow {
  SuccessRule code;
  const char* keyword;   ///< qualifier of VALUE and SELECT
  const char* dumpText;  ///< as developers read it
  bool categorical;      ///< LEVEL becomes categorical per variable, for strings
  Comparison comparison;
  /// The reference that the data give; null where the command gives it.
  double VarCatInfo::*number;
  std::string VarCatInfo::*text;
  const char* label;  ///< template, of variable and reference

  /// Each split group has a reference of its own.
  bool dependsOnData() const { return number != nullptr; }
};

inline constexpr std::array<SuccessRuleRow, 5> kSuccessRules{{
    {SuccessRule::kFirst, keywords::kFirst, "First Category", true, Comparison::kEquals,
     &VarCatInfo::minValue, &VarCatInfo::minString, texts::kValueEquals},
    {SuccessRule::kLast, keywords::kLast, "Last Category", true, Comparison::kEquals,
     &VarCatInfo::maxValue, &VarCatInfo::maxString, texts::kValueEquals},
    {SuccessRule::kMidpoint, keywords::kMidpoint, "Middle Point", false, Comparison::kAtLeast,
     &VarCatInfo::midPoint, nullptr, texts::kValueAtLeast},
    {SuccessRule::kCutpoint, keywords::kCutpoint, "Cut Point", false, Comparison::kAtLeast, nullptr,
     nullptr, texts::kValueAtLeast},
    {SuccessRule::kLevels, keywords::kLevel, "Category Levels", false, Comparison::kOneOf, nullptr,
     nullptr, texts::kValueOneOf},
}};

/// The row of a code or a qualifier; null for one that is unknown.
const SuccessRuleRow* findRule(SuccessRule code);
const SuccessRuleRow* findRule(const std::string& keyword);

/// The number that values are held against: of the data, or the definition's cut point.
double referenceNumber(const SuccessRuleRow& rule, const BinInfoElem& definition,
                       const VarCatInfo& cats);
/// The same of either kind, for rules other than LEVEL: a text where the variable is a string and
/// the rule has one.
VarValue referenceValue(const SuccessRuleRow& rule, const BinInfoElem& definition,
                        const VarCatInfo& cats);

}  // namespace proportions
