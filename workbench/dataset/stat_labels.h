/// The value labels that files of statistics packages bring along.
#pragma once

#include <cstddef>

#include "workbench/dataset/case_source.h"
#include "workbench/statfiles/stat_file.h"

namespace workbench {

/// Gives variables the labels of files, one file after the other.
class StatLabels {
 public:
  /// Adds the labels that a file has for a column to those that its variable has from the files
  /// before. False when a value has another label there. Throws DataError when all labels of all
  /// variables together take too much memory.
  bool add(const StatSource& source, const StatHead& head, const StatColumn& column,
           Variable& variable);

 private:
  void account(const StatSource& source, size_t bytes);

  size_t bytes_ = 0;
};

}  // namespace workbench
