/// Bootstrap of a command's results.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "workbench/parser/command_facts.h"
#include "workbench/session/progress.h"
#include "workbench/session/session.h"

namespace workbench {

struct BootstrapOptions {
  int64_t samples = 0;  ///< 0: none are drawn
  uint64_t seed = 0;
  size_t memoryLimit = size_t{500} << 20;  ///< bytes that the different cases may take
};

/// Throws DataError when the data set has variables that stand in the way of samples: one of their
/// own reserved name, or imputations as split groups. Data that cannot be read are left to the
/// first command.
void refuseBootstrapOf(ActiveDataset& dataset);

/// Runs `entry`, the procedure on the session's command, on samples of the session's data, and adds
/// the tables "Bootstrap" to the current procedure, which has run already. The session is as before
/// when it returns. `progress` may be empty. Throws DataError when the cases cannot be sampled.
void addBootstrap(Session& session, const CommandFacts& facts, const BootstrapOptions& options,
                  const std::function<void()>& entry, const ProgressCallback& progress);

}  // namespace workbench
