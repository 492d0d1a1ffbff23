/// What was read and left out, as a table for readers.
#pragma once

#include <memory>

#include "workbench/output/document.h"

namespace workbench {

/// Beyond this many split groups the table shows the totals alone.
inline constexpr size_t kMostGroupsInTable = 1000;

/// One row per variable, for each split group and for all cases. In a session, for the texts of its
/// headings.
std::unique_ptr<Table> casesTable(const CaseReport& report);

}  // namespace workbench
