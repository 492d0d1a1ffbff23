/// Cases of JSON files.
#pragma once

#include <atomic>
#include <memory>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/data_files.h"
#include "workbench/session/progress.h"
#include "workbench/values/field.h"

namespace workbench {

/// Reads the files once for their names. `interrupted` may be null, else it outlives the source;
/// `progress` may be empty.
std::unique_ptr<CaseSource> openJsonCases(const DataFiles& files, const FieldRules& rules,
                                          const std::atomic<bool>* interrupted,
                                          ProgressCallback progress);

}  // namespace workbench
