/// Letters without their case.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// Full Unicode case folding of UTF-8 text. Bytes that are not UTF-8 become the replacement
/// character.
std::string foldCase(std::string_view text);

/// Full Unicode upper-casing of UTF-8 text, the same in every locale.
std::string upperCase(std::string_view text);

}  // namespace workbench
