/// Where the command text comes from.
#pragma once

#include <string>

namespace workbench {

/// The text of a command file ("-": standard input). Throws UsageError when it cannot be read or is
/// longer than any command file may be (64 MiB).
std::string readCommandFile(const std::string& path);

/// The text with line ends of any system as line feeds.
std::string withLineFeeds(const std::string& text);

}  // namespace workbench
