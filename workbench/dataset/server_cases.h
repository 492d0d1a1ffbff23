/// Cases of tables and queries that an SQL server holds.
#pragma once

#include <memory>

#include "workbench/dataset/case_source.h"
#include "workbench/odbc/server_relation.h"
#include "workbench/session/progress.h"
#include "workbench/values/field.h"

namespace workbench {

/// Cases are counted at the server where their values can be kept apart there, and come one by one
/// otherwise. Of the rules only the texts for missing values matter, and only when they were given.
/// `progress` may be empty. Throws DataError.
std::unique_ptr<CaseSource> openServerCases(const ServerOptions& options, const FieldRules& rules,
                                            ProgressCallback progress);

}  // namespace workbench
