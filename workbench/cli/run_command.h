/// Runs one command of the procedure on a data set.
#pragma once

#include <functional>

#include "workbench/dataset/source_dataset.h"
#include "workbench/output/output_document.h"
#include "workbench/parser/command_text.h"
#include "workbench/session/session.h"

namespace workbench {

/// Opens a procedure in the session's document, runs `entry` and closes the procedure. When the
/// data turn out to be other than their beginning told, the run is repeated on what they are. What
/// was read is counted; with `advise` there is advice, too.
void runCommand(Session& session, SourceDataset& dataset, const CommandTokens& command, bool advise,
                const std::function<void()>& entry);

}  // namespace workbench
