/// Names that a table's columns may not have.
#pragma once

#include <string>
#include <vector>

namespace workbench {

/// Throws DataError when two names are the same but for the case of their letters; `place` begins
/// the message. Columns without a name (an empty one) may be there, but no one can name them.
void refuseEqualNames(const std::vector<std::string>& names, const std::string& place);

/// The same, and no name may be empty.
void refuseBadNames(const std::vector<std::string>& names, const std::string& place);

}  // namespace workbench
