/// The different values of a variable.
#pragma once

#include <cstddef>
#include <vector>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

struct ValueList {
  std::vector<SplitValue> values;  ///< in ascending order, without missing ones
  bool more = false;               ///< there are others
};

/// Reads the cases until `most` different values of the variable were found that are neither
/// missing nor blank. The variable must be one that the running command names; no other feed may be
/// in use. After a read error the list is as far as it was read.
ValueList occurringValues(ActiveDataset& dataset, VarIndex index, size_t most);

}  // namespace workbench
