/// How a run tells how far it is.
#pragma once

#include <cstdint>
#include <functional>

namespace workbench {

/// What a run is at. Each phase has percentages of its own, so that they hold whatever the others
/// cost.
enum class Phase : uint8_t {
  kWaiting,      ///< a server is at work, and has sent no row yet
  kNames,        ///< which columns there are
  kReading,      ///< of all cases
  kKeeping,      ///< once more, to keep on disk what does not fit into memory
  kSorting,      ///< of what was kept, by split group
  kFirstPass,    ///< of the procedure, over the cases that were read
  kSecondPass,   ///< the same
  kFurtherPass,  ///< of the workbench, for resamples and imputations
  kLeavingOut,   ///< results without each of the cases
  kSamples,      ///< bootstrap samples
};

/// `percent`, of the phase, is negative when it is unknown; `done` is how many cases, or samples,
/// the phase has behind it.
using ProgressCallback = std::function<void(Phase phase, double percent, int64_t done)>;

}  // namespace workbench
