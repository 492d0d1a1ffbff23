/// Names that a table's columns may not have.
#pragma once

#include <string>
#include <vector>

namespace workbench {

/// Throws DataError when a name is empty, or when two are the same but for the case of their
/// letters; `place` begins the message.
void refuseBadNames(const std::vector<std::string>& names, const std::string& place);

}  // namespace workbench
