/// What a query may do: read, and nothing else.
#pragma once

#include <string>

#include "workbench/engine/database.h"

namespace workbench {

/// Throws DataError when the plan of a SELECT statement, views and macros that it uses included,
/// holds anything but operators that work on rows and functions that read the data. Nothing is
/// executed. `place` begins the message. Throws EngineError when the statement cannot be planned.
void refuseForeignOperators(Database& database, const std::string& select,
                            const std::string& place);

}  // namespace workbench
