/// Values inside messages.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// At most the first 80 characters of a text, with "..." after a longer one; control characters and
/// bytes that are not UTF-8 stand as escapes (\n, \t, \x1b).
std::string excerpt(std::string_view text);

}  // namespace workbench
