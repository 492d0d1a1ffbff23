/// Which whole numbers a double holds.
#pragma once

namespace workbench {

/// 2^53: up to here every whole number is a double, and sums of them are exact in any order.
inline constexpr double kAllWhole = 9007199254740992.0;

}  // namespace workbench
