#include "workbench/cli/program.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "workbench/catalogue/catalogue.h"
#include "workbench/cli/console.h"
#include "workbench/cli/descriptor_stream.h"
#include "workbench/cli/help.h"
#include "workbench/cli/input_files.h"
#include "workbench/cli/interruption.h"
#include "workbench/cli/module_library.h"
#include "workbench/cli/options.h"
#include "workbench/cli/output_target.h"
#include "workbench/cli/progress_line.h"
#include "workbench/cli/run_command.h"
#include "workbench/listing/listing.h"
#include "workbench/parser/variable_names.h"
#include "workbench/text/collation.h"

namespace workbench {
namespace {

constexpr int kDone = 0;
constexpr int kRefused = 1;
constexpr int kUnusable = 2;

/// Messages go to standard error when the results do not show them to somebody who watches.
void echoMessages(const OutputDocument& document) {
  for (const auto& procedure : document.procedures()) {
    for (const DocumentMessage& message : procedure->messages) {
      tell((message.severity == Severity::kError ? "Error: " : "Warning: ") + message.text);
    }
  }
}

/// JSON and HTML carry the advice themselves.
void echoAdvice(const OutputDocument& document) {
  for (const auto& procedure : document.procedures()) {
    for (const Advice& advice : procedure->advice) {
      tell("Advice: " + advice.text);
    }
  }
}

bool allFailed(const OutputDocument& document) {
  const auto& procedures = document.procedures();
  return std::all_of(procedures.begin(), procedures.end(), [](const auto& p) { return p->failed; });
}

bool anyFailed(const OutputDocument& document) {
  const auto& procedures = document.procedures();
  return std::any_of(procedures.begin(), procedures.end(), [](const auto& p) { return p->failed; });
}

void deliver(const OutputDocument& document, const ProgramOptions& options,
             const OutputTarget& target) {
  const bool refused = allFailed(document);
  const bool toFile = !target.isStandardOutput();
  const bool carriesMessages = options.format == Format::kJson && !toFile;
  if (toFile || options.format == Format::kCsv || (refused && !carriesMessages)) {
    echoMessages(document);
  }
  const bool carriesAdvice = options.format == Format::kJson || options.format == Format::kHtml;
  if (!carriesAdvice) echoAdvice(document);
  if (refused && !carriesMessages) return;
  stopIfInterrupted();
  target.write([&](std::ostream& out) { render(document, options.format, options.shown, out); });
}

void chooseOrder(const std::string& locale) {
  try {
    orderStringsBy(locale);
  } catch (const std::invalid_argument& error) {
    throw UsageError(std::string("--locale: ") + error.what());
  }
}

/// Empty when nobody wants to be told. `progress` outlives it.
ProgressCallback teller(ProgressLine& progress) {
  if (!progress.isWanted()) return {};
  return [&progress](Phase phase, double percent, int64_t done) {
    progress.show(phase, percent, done);
  };
}

/// `progress` outlives the reading.
std::unique_ptr<ActiveDataset> openData(const ProgramOptions& options, ProgressLine& progress) {
  if (options.counts) return std::make_unique<CountsDataset>(*options.counts);
  DataOptions data = options.data;
  data.progress = teller(progress);
  return openDataset(data);
}

/// Told to those who want to know how reading gets on.
void tellCost(const ActiveDataset& dataset, const ProgramOptions& options) {
  const std::string cost = dataset.cost();
  if (options.progress == ProgressMode::kAlways && !cost.empty()) tell(cost);
}

/// Unreadable data end a run of several commands.
void tellNotRun(size_t commands) {
  if (commands == 0) return;
  const std::string count =
      commands == 1 ? "1 command was" : fmt::format("{} commands were", commands);
  tell("Error: " + count +
       " not run, since the data for the command before could not be read. "
       "Correct the data, or leave out the command that failed.");
}

/// Each statement once, in the order in which the commands need it.
int explainCommands(const ProgramOptions& options, const OutputTarget& target) {
  const std::unique_ptr<SourceDataset> dataset = openDataset(options.data);
  std::vector<std::string> statements;
  for (const CommandTokens& command : splitCommands(options.commandText)) {
    dataset->beginCommand(mentionedVariables(command, *dataset));
    for (std::string& statement : dataset->statements()) {
      if (std::find(statements.begin(), statements.end(), statement) != statements.end()) continue;
      statements.push_back(std::move(statement));
    }
  }
  if (statements.empty()) tell("The program reads these data itself: there are no statements.");
  target.write([&](std::ostream& out) {
    for (const std::string& statement : statements) out << statement << ";\n";
  });
  return kDone;
}

/// Typed counts are few, and in memory.
ListingSource listingSource(ActiveDataset& dataset) {
  if (auto* source = dynamic_cast<SourceDataset*>(&dataset)) {
    return {source->mostVariables(),
            [source](const auto& some) { return source->fitInMemory(some); }};
  }
  return {kFewColumns, [&dataset](const auto& some) { return dataset.beginCommand(some), true; }};
}

int listData(const ProgramOptions& options, const OutputTarget& target) {
  std::unique_ptr<ActiveDataset> dataset;
  std::vector<ListedVariable> variables;
  {
    ProgressLine progress(options.progress);
    dataset = openData(options, progress);
    Session session;
    session.dataset = dataset.get();
    const SessionScope scope(session);
    variables = listVariables(session, listingSource(*dataset));
  }
  tellCost(*dataset, options);
  if (dataset->failed()) {
    complain(dataset->failure());
    return kUnusable;
  }
  target.write([&](std::ostream& out) {
    if (options.format == Format::kJson) return writeListingAsJson(*dataset, variables, out);
    writeListingAsText(*dataset, variables, options.shown.width, out);
  });
  return kDone;
}

int runCommands(const ProgramOptions& options, const OutputTarget& target) {
  const std::vector<CommandTokens> commands = splitCommands(options.commandText);
  if (commands.empty()) {
    throw UsageError("the command text is empty; see the example of --help");
  }
  const ModuleLibrary module;
  const Catalogue catalogue = Catalogue::english();
  std::unique_ptr<ActiveDataset> dataset;
  OutputDocument document;
  {
    ProgressLine progress(options.progress);
    dataset = openData(options, progress);
    if (options.bootstrap.samples > 0) refuseBootstrapOf(*dataset);
    Session session;
    session.dataset = dataset.get();
    session.document = &document;
    session.catalogue = &catalogue;
    const SessionScope scope(session);
    for (const CommandTokens& command : commands) {
      runCommand(session, *dataset, command, {options.advise, options.bootstrap, teller(progress)},
                 [&module] { module.run(); });
      if (dataset->failed()) break;
    }
  }
  tellCost(*dataset, options);
  deliver(document, options, target);
  if (dataset->failed()) {
    tellNotRun(commands.size() - document.procedures().size());
    return kUnusable;
  }
  return anyFailed(document) ? kRefused : kDone;
}

int runAll(ProgramOptions options) {
  chooseOrder(options.locale);
  const OutputTarget target(options.output);
  refuseToOverwrite(inputFiles(options), options.output, target);
  options.data.reads = [&](const std::string& file) {
    refuseToOverwrite(databaseFiles(file), options.output, target);
  };
  if (options.explain) return explainCommands(options, target);
  return options.list ? listData(options, target) : runCommands(options, target);
}

}  // namespace
}  // namespace workbench

int runProgram(int argc, const char* const* argv) {
  using namespace workbench;
  try {
    holdStandardDescriptors();
    const InterruptionGuard guard(kUnusable);
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (const auto text = askedText(arguments)) {
      OutputTarget("-").write([&](std::ostream& out) { out << *text; });
      return kDone;
    }
    return runAll(readOptions(arguments));
  } catch (const UsageError& error) {
    complain(std::string(error.what()) + "\nRun proportions --help for the options.");
  } catch (const std::bad_alloc&) {
    complain("the memory is exhausted");
  } catch (const std::exception& error) {
    complain(error.what());
  }
  return kUnusable;
}
