/// The cases of files of statistics packages as typed rows.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/typed_blocks.h"
#include "workbench/statfiles/stat_file.h"

namespace workbench {

/// One file of a data set.
struct StatPart {
  StatSource source;
  uint64_t bytes = 0;
  StatHead head;
  std::map<std::string, size_t> places;  ///< of the columns that have a name
  std::vector<std::string> pathValues;
};

/// The parts one after the other. They outlive the rows, and so do the columns: those that every
/// part has, then those of the paths.
std::unique_ptr<TypedRows> openStatRows(const std::vector<StatPart>& parts,
                                        const std::vector<TypedColumnFacts>& columns,
                                        const CaseRequest& request,
                                        std::function<void(double, int64_t)> progress);

}  // namespace workbench
