/// Row headings: what counts as a success, which side of a grouping, which gathered value.
#pragma once

#include <optional>

#include "host/output.h"
#include "module/model/algorithm.h"

namespace proportions {

/// The label of what counts as a success for a variable; none for an unknown rule.
std::optional<BpComposite> SuccessDefinitionLabel(VarIndex variable, const BinInfoElem& definition,
                                                  const VarCatInfo& cats);

/// The heading of side 0 (below the cut, or the first level) or side 1 of the grouping; none for a
/// rule that makes no sides.
std::optional<BpComposite> GroupSideLabel(const Grouping& grouping, int side);

/// Adds, for a grouping at the midpoint, a category per gathered midpoint: all of side 0, then all
/// of side 1. Nothing without gathered midpoints.
void AddCutSideCategories(const Grouping& grouping, BpGroup& dimension);

/// Adds a category per gathered value of the variable, in order.
void AddValueCategories(const ListedVariable& variable, BpGroup& group);

/// Adds the rows of a variable: its gathered values, then what counts as a success, if there is a
/// label for it.
void AddVariableRows(const ListedVariable& variable, BpGroup& group);

/// Fills and finishes a label that has only a number.
BpComposite NumberLabel(const char* templateText, const BpNumber& number);

}  // namespace proportions
