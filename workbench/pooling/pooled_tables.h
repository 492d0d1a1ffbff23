/// The tables of pooled imputations.
#pragma once

#include <cstddef>

#include "workbench/session/session.h"

namespace workbench {

/// Adds to the current procedure, after the results of each imputation, a table "Pooled: " for
/// each of its tables of intervals or statistics. `position` is that of the imputation number among
/// the session's split variables, `level` is in percent.
void addPooledTables(Session& session, size_t position, double level);

}  // namespace workbench
