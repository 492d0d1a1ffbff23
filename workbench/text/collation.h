/// The order of strings.
#pragma once

#include <string_view>

namespace workbench {

/// A total order on byte strings: the locale of the process first, bytes where it sees no
/// difference. Negative, zero (equal bytes only) or positive.
int compareStrings(std::string_view a, std::string_view b);

}  // namespace workbench
