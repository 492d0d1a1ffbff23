/// Whether cases are counted or kept one by one.
#pragma once

#include <cstddef>

#include "workbench/counting/combination_table.h"

namespace workbench {

/// Follows a table that counts cases.
class WorthCounting {
 public:
  /// To be asked after every block, with the number of cases that the table took in. False: the
  /// cases to come had better be kept one by one; not to be asked again then.
  bool stillPays(const CombinationTable& table, size_t cases);

 private:
  size_t cases_ = 0;  // since the last judgement
  size_t known_ = 0;  // combinations at that time
};

}  // namespace workbench
