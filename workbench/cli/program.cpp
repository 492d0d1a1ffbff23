#include "workbench/cli/program.h"

#include <algorithm>
#include <exception>
#include <iostream>

#include "workbench/catalogue/catalogue.h"
#include "workbench/cli/interruption.h"
#include "workbench/cli/module_library.h"
#include "workbench/cli/options.h"
#include "workbench/cli/output_target.h"
#include "workbench/cli/progress_line.h"
#include "workbench/cli/run_command.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr int kDone = 0;
constexpr int kRefused = 1;
constexpr int kUnusable = 2;

void complain(const std::string& text) { std::cerr << "proportions: " << text << '\n'; }

/// Messages go to standard error when the results do not show them to somebody who watches.
void echoMessages(const OutputDocument& document) {
  for (const auto& procedure : document.procedures()) {
    for (const DocumentMessage& message : procedure->messages) {
      std::cerr << (message.severity == Severity::kError ? "Error: " : "Warning: ") << message.text
                << '\n';
    }
  }
}

/// JSON and HTML carry the advice themselves.
void echoAdvice(const OutputDocument& document) {
  for (const auto& procedure : document.procedures()) {
    for (const Advice& advice : procedure->advice) {
      std::cerr << "Advice: " << printable(advice.text) << '\n';
    }
  }
}

bool allFailed(const OutputDocument& document) {
  const auto& procedures = document.procedures();
  return std::all_of(procedures.begin(), procedures.end(), [](const auto& p) { return p->failed; });
}

void deliver(const OutputDocument& document, const ProgramOptions& options) {
  const auto write = [&](std::ostream& out) {
    render(document, options.format, options.shown, out);
  };
  const bool refused = allFailed(document);
  const bool carriesMessages = options.format == Format::kJson;
  if (!options.output.empty()) {
    echoMessages(document);
    if (!refused) writeFile(options.output, write);
  } else {
    if (options.format == Format::kCsv || (refused && !carriesMessages)) echoMessages(document);
    if (!refused || carriesMessages) writeStandardOutput(write);
  }
  if (!carriesMessages && options.format != Format::kHtml) echoAdvice(document);
}

int runAll(const ProgramOptions& options) {
  const std::vector<CommandTokens> commands = splitCommands(options.commandText);
  if (commands.empty()) {
    throw UsageError("the command text is empty; see the example of --help");
  }
  if (!options.output.empty()) checkWritable(options.output);

  const ModuleLibrary module;
  const Catalogue catalogue = Catalogue::english();
  const std::unique_ptr<SourceDataset> dataset = openDataset(options.data);
  const InterruptionGuard guard([&dataset] { dataset->requestInterrupt(); });
  OutputDocument document;
  {
    ProgressLine progress(options.progress);
    dataset->setProgress(
        [&progress](double percent, int64_t rows) { progress.show(percent, rows); });
    Session session;
    session.dataset = dataset.get();
    session.document = &document;
    session.catalogue = &catalogue;
    const SessionScope scope(session);
    for (const CommandTokens& command : commands) {
      runCommand(session, *dataset, command, options.advise, [&module] { module.run(); });
      if (dataset->failed()) break;
    }
  }
  if (interruptedBy() != 0) {
    complain("interrupted");
    return kUnusable;
  }
  deliver(document, options);
  if (dataset->failed()) return kUnusable;
  const auto& procedures = document.procedures();
  const bool anyFailed =
      std::any_of(procedures.begin(), procedures.end(), [](const auto& p) { return p->failed; });
  return anyFailed ? kRefused : kDone;
}

}  // namespace
}  // namespace workbench

int runProgram(int argc, const char* const* argv) {
  using namespace workbench;
  try {
    const std::optional<ProgramOptions> options = readOptions(argc, argv);
    return options ? runAll(*options) : kDone;
  } catch (const UsageError& error) {
    complain(std::string(error.what()) + "\nRun proportions --help for the options.");
  } catch (const std::bad_alloc&) {
    complain("the memory is exhausted");
  } catch (const std::exception& error) {
    complain(error.what());
  }
  return kUnusable;
}
