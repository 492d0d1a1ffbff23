/// Queries over files that the program reads itself.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "workbench/dataset/case_source.h"
#include "workbench/session/progress.h"
#include "workbench/values/field.h"

namespace workbench {

/// The result of a query in which the cases of `texts`, each column of the kind that all its values
/// have, are the table `data`; missing values that have names are null there. `interrupted` may be
/// null, else it outlives the source; `progress` may be empty. Throws DataError.
std::unique_ptr<CaseSource> openQueryCases(CaseSource& texts, const std::string& query,
                                           const FieldRules& rules,
                                           const std::atomic<bool>* interrupted,
                                           const ProgressCallback& progress);

}  // namespace workbench
