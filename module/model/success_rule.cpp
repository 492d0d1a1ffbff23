#include "module/model/success_rule.h"

#include <algorithm>

namespace proportions {
namespace {

template <typename Matches>
const SuccessRuleRow* findRow(const Matches& matches) {
  const auto row = std::find_if(kSuccessRules.begin(), kSuccessRules.end(), matches);
  return row == kSuccessRules.end() ? nullptr : &*row;
}

}  // namespace

const SuccessRuleRow* findRule(SuccessRule code) {
  return findRow([code](const SuccessRuleRow& row) { return row.code == code; });
}

const SuccessRuleRow* findRule(const std::string& keyword) {
  return findRow([&keyword](const SuccessRuleRow& row) { return keyword == row.keyword; });
}

double referenceNumber(const SuccessRuleRow& rule, const BinInfoElem& definition,
                       const VarCatInfo& cats) {
  return rule.number == nullptr ? definition.cutPoint() : cats.*rule.number;
}

VarValue referenceValue(const SuccessRuleRow& rule, const BinInfoElem& definition,
                        const VarCatInfo& cats) {
  if (cats.isString && rule.text != nullptr) return VarValue::text(cats.*rule.text);
  return VarValue::number(referenceNumber(rule, definition, cats));
}

}  // namespace proportions
