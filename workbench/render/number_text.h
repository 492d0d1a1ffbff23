/// Cells as readers see them.
#pragma once

#include <string>

#include "workbench/output/document.h"

namespace workbench {

/// Counts as whole numbers, statistics with four decimals (very large and very small ones in
/// scientific form); "." for a missing value. A p value (`isProbability`) below what four decimals
/// show reads "<0.0001".
std::string cellText(const TableCell& cell, bool isProbability);

/// True for the columns of p values.
bool isProbabilityColumn(const LabelData& column);

}  // namespace workbench
