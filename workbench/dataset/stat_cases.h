/// Cases of files of statistics packages.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/data_files.h"
#include "workbench/session/progress.h"
#include "workbench/values/field.h"

namespace workbench {

/// `encoding` is that of the texts; empty: the one that each file names. Of the rules only the
/// texts for missing values matter here, and only when they were given. `interrupted` may be null,
/// else it outlives the source; `progress` may be empty. Throws DataError.
std::unique_ptr<CaseSource> openStatCases(const DataFiles& files, const std::string& encoding,
                                          const FieldRules& rules,
                                          const std::atomic<bool>* interrupted,
                                          ProgressCallback progress);

}  // namespace workbench
