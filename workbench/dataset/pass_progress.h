/// How far a pass over the cases is.
#pragma once

#include <cstdint>
#include <memory>

#include "workbench/dataset/case_feed.h"
#include "workbench/session/progress.h"

namespace workbench {

/// A feed that tells how many of its `rows` rows are delivered, from the first one on and then
/// every 65,536. `progress` outlives it; without one the feed comes back as it is.
std::unique_ptr<CaseFeed> withProgress(std::unique_ptr<CaseFeed> feed, Phase phase, int64_t rows,
                                       const ProgressCallback& progress);

}  // namespace workbench
