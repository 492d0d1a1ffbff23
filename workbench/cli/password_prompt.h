/// Passwords of servers: never on the command line, where every user of the machine can read them.
#pragma once

#include <optional>
#include <string>

#include "workbench/odbc/server_relation.h"

namespace workbench {

/// The first line of the file, else the environment's PROPORTIONS_ODBC_PASSWORD, else what somebody
/// answers on the terminal once the server asks. Throws UsageError for a file that cannot be read.
ServerPassword serverPassword(const std::optional<std::string>& file);

}  // namespace workbench
