/// Runs one command of the procedure on a data set.
#pragma once

#include <functional>

#include "workbench/bootstrap/bootstrap.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/output/output_document.h"
#include "workbench/parser/command_text.h"
#include "workbench/session/progress.h"
#include "workbench/session/session.h"

namespace workbench {

/// What the host does beside running the procedure.
struct RunOptions {
  bool advise = true;
  BootstrapOptions bootstrap;
  ProgressCallback progress = {};  ///< of the samples; may be empty
};

/// Opens a procedure in the session's document, runs `entry` and closes the procedure. What was
/// read is counted; imputations are pooled, and samples drawn, when there are results. Throws
/// DataError when samples cannot be drawn.
void runCommand(Session& session, ActiveDataset& dataset, const CommandTokens& command,
                const RunOptions& options, const std::function<void()>& entry);

}  // namespace workbench
