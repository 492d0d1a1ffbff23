/// Bytes that cannot be part of a text.
#pragma once

#include <string_view>

namespace workbench {

/// Position of the first byte that does not belong to a UTF-8 character; npos for none.
size_t invalidUtf8At(std::string_view text);

}  // namespace workbench
