#include "workbench/cli/run_command.h"

#include <algorithm>

#include "workbench/advice/advice.h"
#include "workbench/advice/case_tally.h"
#include "workbench/advice/cases_table.h"
#include "workbench/output/labels.h"
#include "workbench/output/report.h"
#include "workbench/output/template.h"
#include "workbench/parser/refusal_places.h"
#include "workbench/parser/syntax_error.h"
#include "workbench/parser/variable_names.h"
#include "workbench/pooling/imputations.h"
#include "workbench/pooling/pooled_tables.h"
#include "workbench/text/utf8.h"

namespace workbench {
namespace {

constexpr const char* kTitle = "Proportions";

/// Shows the place of a word that the procedure refused, and why a level was.
void showPlace(const CommandTokens& command, const CommandFacts& facts, DocumentMessage& message) {
  if (message.severity != Severity::kError) return;
  auto problem = refusalPlace(command, facts, message.key, message.arguments);
  if (!problem) return;
  problem->what = message.text + (problem->what.empty() ? "" : " " + problem->what);
  std::vector<std::string> texts;
  for (const std::string& text : placedArguments(command, *problem)) {
    texts.push_back(validUtf8(text));
  }
  message.text = fillTemplate(catalogueText(kPlacedProblem), texts);
}

void tellOfCases(DocumentProcedure& procedure, const CommandFacts& facts,
                 const ActiveDataset& dataset, const CaseTally& cases, bool advise) {
  procedure.cases = cases.report();
  procedure.casesTable = casesTable(*procedure.cases);
  if (advise) procedure.advice = adviceOn(facts, dataset, cases);
}

/// Pools the results of imputations, or refuses to when there is one only; says what looks wrong
/// with them. The procedure's own checks have come before. Reads the data.
void poolImputations(Session& session, size_t position, double level) {
  ActiveDataset& dataset = *session.dataset;
  const ImputationCheck check = checkImputations(dataset, position);
  if (dataset.failed()) return;
  if (check.imputations == 1) {
    const VarIndex number = dataset.splitVariables()[position];
    report(Severity::kError, "One imputation ^1 ...", {dataset.declaration(number).name});
    session.document->current().tables.clear();
    return;
  }
  if (check.imputations > 0 && check.originalMissing) {
    report(Severity::kWarning, "Imputation without original data ...", {});
  }
  if (check.sizesDiffer) report(Severity::kWarning, "Imputations of different sizes ...", {});
  addPooledTables(session, position, level);
}

bool hasError(const DocumentProcedure& procedure) {
  return std::any_of(
      procedure.messages.begin(), procedure.messages.end(),
      [](const DocumentMessage& message) { return message.severity == Severity::kError; });
}

}  // namespace

void runCommand(Session& session, ActiveDataset& dataset, const CommandTokens& command,
                const RunOptions& options, const std::function<void()>& entry) {
  session.command = &command;
  CommandFacts facts;
  session.facts = &facts;
  OutputDocument& document = *session.document;
  CaseTally cases(dataset, facts, options.advise);
  session.observer = &cases;
  document.beginProcedure(kTitle, command.source());
  dataset.beginCommand(mentionedVariables(command, dataset));
  entry();
  session.observer = nullptr;
  session.facts = nullptr;
  DocumentProcedure& procedure = document.current();
  for (DocumentMessage& message : procedure.messages) showPlace(command, facts, message);
  if (cases.isComplete() && !dataset.failed()) {
    if (!hasError(procedure)) {
      if (options.bootstrap.samples > 0) {
        addBootstrap(session, facts, options.bootstrap, entry, options.progress);
      }
      if (const auto position = imputationPosition(dataset)) {
        poolImputations(session, *position, facts.level);
      }
    }
    tellOfCases(procedure, facts, dataset, cases, options.advise);
  }
  if (!dataset.failed() && dataset.caseCount() == 0) {
    report(Severity::kWarning, "No cases", {});
  }
  document.finishProcedure(&dataset);
}

}  // namespace workbench
