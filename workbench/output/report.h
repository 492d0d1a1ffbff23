/// Reports a message of the host's own (syntax errors, unknown variables) into the output of the
/// running command.
#pragma once

#include <string>
#include <vector>

namespace workbench {

enum class Severity { kWarning, kError };

/// `key` is a key of the message catalogue with placeholders ^1, ^2, ...; `arguments` fill them.
/// Errors go to the error repository too. The message carries no split group.
void report(Severity severity, const std::string& key, const std::vector<std::string>& arguments);

}  // namespace workbench
