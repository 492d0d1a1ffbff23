/// The order of strings.
#pragma once

#include <string_view>

namespace workbench {

/// A total order on byte strings: that of the environment's locale (LC_ALL, LC_COLLATE, LANG;
/// without any, or with C, the order of ASCII; the root locale where ICU does not know it), and
/// bytes where it sees no difference. Negative, zero (equal bytes only) or positive. The locale is
/// read once per thread.
int compareStrings(std::string_view a, std::string_view b);

}  // namespace workbench
