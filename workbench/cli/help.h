/// What the program says about itself.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// The text that --help or --version asks for, wherever it stands among the arguments; nothing when
/// neither does. Throws UsageError when there is no help on the topic that follows --help.
std::optional<std::string> askedText(const std::vector<std::string>& arguments);

}  // namespace workbench
