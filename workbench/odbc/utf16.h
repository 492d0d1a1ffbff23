/// Texts between the program (UTF-8) and the driver manager (UTF-16).
#pragma once

#include <sqltypes.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// With a zero after the last unit. Bytes that are not UTF-8 become U+FFFD.
std::vector<SQLWCHAR> utf16Of(std::string_view text);

/// Appends a text of `count` units. A surrogate without its partner becomes U+FFFD.
void appendUtf8(const SQLWCHAR* units, size_t count, std::string& text);

}  // namespace workbench
