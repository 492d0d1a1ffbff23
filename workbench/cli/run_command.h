/// Runs one command of the procedure on a data set.
#pragma once

#include <functional>

#include "workbench/dataset/active_dataset.h"
#include "workbench/output/output_document.h"
#include "workbench/parser/command_text.h"
#include "workbench/session/session.h"

namespace workbench {

/// Opens a procedure in the session's document, runs `entry` and closes the procedure.
/// What was read is counted; with `advise` there is advice, too.
void runCommand(Session& session, ActiveDataset& dataset, const CommandTokens& command, bool advise,
                const std::function<void()>& entry);

}  // namespace workbench
