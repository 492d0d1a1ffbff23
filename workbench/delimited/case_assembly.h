/// From what the threads have read to one coding for all.
#pragma once

#include <string>
#include <vector>

#include "workbench/delimited/column_coder.h"
#include "workbench/delimited/delimited_data.h"
#include "workbench/delimited/reading_pass.h"

namespace workbench {

/// Columns that were read as numbers although not all of their values are: the files have to be
/// read again with codes for them.
struct WrongForm {
  std::vector<size_t> columns;
};

/// `labels` are the parts'. Throws DataError for the first value that contradicts its column's
/// type, WrongForm as above. The shares are used up.
DelimitedCases assembleCases(std::vector<ReadShare>& shares, const std::vector<ColumnPlan>& plans,
                             const std::vector<std::string>& labels, bool complete);

/// Throws the DataError for a value that its column cannot have; `label` is its part's.
[[noreturn]] void refuseContradiction(const Contradiction& found, const ColumnPlan& plan,
                                      const std::string& label);

}  // namespace workbench
