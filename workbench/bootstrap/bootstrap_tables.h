/// The tables of a bootstrap.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "workbench/bootstrap/sampled_results.h"
#include "workbench/resampling/bootstrap_interval.h"
#include "workbench/session/session.h"

namespace workbench {

struct BootstrapFindings {
  int64_t samples = 0;
  uint64_t seed = 0;
  int64_t messages = 0;    ///< about samples
  SampledResults results;  ///< value 0 of each is that of the data, the others those of the samples
  /// Of each result the values with one case left out; nothing when that would have taken too long.
  std::optional<std::vector<std::vector<LeftOut>>> leftOut;
};

/// Adds one table, or one for each split group where each has tables of its own, to the current
/// procedure, and a warning where samples gave rise to messages. `level` is in percent.
void addBootstrapTables(Session& session, double level, const BootstrapFindings& findings);

}  // namespace workbench
