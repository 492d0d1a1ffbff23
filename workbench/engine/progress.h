/// How reading tells how far it is.
#pragma once

#include <cstdint>
#include <functional>

namespace workbench {

/// `percent` is negative when it is unknown; `cases` is what was read so far.
using ProgressCallback = std::function<void(double percent, int64_t cases)>;

}  // namespace workbench
