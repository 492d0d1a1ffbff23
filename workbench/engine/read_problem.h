/// The engine's complaints about the data, in words for the person who gave the data.
#pragma once

#include <string>

namespace workbench {

/// What, where, what to do. `label` names the data: a file, a database or a query.
std::string readProblem(const std::string& engineText, const std::string& label);

}  // namespace workbench
