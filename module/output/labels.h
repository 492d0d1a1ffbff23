/// Row headings: what counts as a success, which side of a grouping, which gathered value.
#pragma once

#include <optional>

#include "host/output.h"
#include "module/driver/algorithm.h"

namespace proportions {

/// The label of what counts as a success for a variable; none for an unknown rule.
std::optional<BpComposite> SuccessDefinitionLabel(VarIndex variable, const BinInfoElem& definition,
                                                  const VarCatInfo& cats);

/// The heading of side 0 (below the cut, or the first level) or side 1 of the grouping; none for a
/// rule that makes no sides.
std::optional<BpComposite> GroupSideLabel(const PRPAlgorithm& analysis, int side);

/// Adds, for a grouping at the midpoint, a category per gathered midpoint: all of side 0, then all
/// of side 1. Nothing without gathered midpoints.
void AddCutSideCategories(const PRPAlgorithm& analysis, BpGroup& dimension);

/// A variable of one of the two lists, with what its rows are labelled by.
struct ListedVariable {
  VarIndex index;
  const VarCatInfo* cats;
  const BinInfoElem* definition;
  const ValueList* gathered;  ///< of all split groups; null when nothing is gathered
};
ListedVariable firstListVariable(const PRPAlgorithm& analysis, int32_t position);
/// From the second list when there is one, else from the first.
ListedVariable secondListVariable(const PRPAlgorithm& analysis, int32_t position);

/// Adds a category per gathered value of the variable, in order.
void AddValueCategories(const ListedVariable& variable, BpGroup& group);

/// The rows of a variable: its gathered values, then what counts as a success, which is given back;
/// null when there is no label for it.
BpCategory* addVariableRows(const ListedVariable& variable, BpGroup& group);

/// Fills and finishes a label that has only a number.
BpComposite numberLabel(const char* templateText, const BpNumber& number);

}  // namespace proportions
