#include "workbench/cli/run_command.h"

#include "workbench/output/report.h"
#include "workbench/parser/variable_names.h"

namespace workbench {
namespace {

constexpr const char* kTitle = "Proportions";

}  // namespace

void runCommand(Session& session, SourceDataset& dataset, const CommandTokens& command,
                const std::function<void()>& entry) {
  session.command = &command;
  OutputDocument& document = *session.document;
  document.beginProcedure(kTitle, command.source());
  dataset.beginCommand(mentionedVariables(command, dataset));
  entry();
  const bool parsed = !document.current().notes.empty();
  if (parsed && !dataset.failed() && dataset.caseCount() == 0) {
    report(Severity::kWarning, "No cases", {});
  }
  document.finishProcedure(&dataset);
}

}  // namespace workbench
