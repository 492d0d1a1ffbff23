/// Tells apart what reads alike.
#pragma once

#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// Gives different texts to labels that are not the same but read alike: each gets the name of its
/// variable in brackets, when it has one, and those that still read like an earlier one a number,
/// " (2)" and so on.
void distinguish(const std::vector<LabelData*>& labels);

/// Does so for the dimensions of a table, outermost first, and for the children of every node.
void distinguishLabels(Table& table);

}  // namespace workbench
