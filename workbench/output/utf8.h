/// Keeps what leaves the document well-formed.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// The text with every byte that is no UTF-8 shown as the replacement character.
std::string validUtf8(std::string_view text);

}  // namespace workbench
