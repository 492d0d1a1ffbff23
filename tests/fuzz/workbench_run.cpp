#include "tests/fuzz/workbench_run.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/fuzz/target.h"
#include "workbench/catalogue/catalogue.h"
#include "workbench/output/output_document.h"
#include "workbench/parser/command_text.h"
#include "workbench/render/render.h"
#include "workbench/session/session.h"

extern "C" void PROPORTI();

namespace fuzz {
namespace {

using nlohmann::json;

const workbench::Catalogue& english() {
  static const workbench::Catalogue catalogue = workbench::Catalogue::english();
  return catalogue;
}

std::string rendered(const workbench::OutputDocument& document, workbench::Format format) {
  std::ostringstream out;
  workbench::render(document, format, {}, out);
  return out.str();
}

/// A promise about a part of the document, which is shown when it is broken.
void promiseOf(const json& part, bool holds, const char* what) {
  if (!holds) promise(false, what, part.dump());
}

bool within(double value, double low, double high) { return value >= low && value <= high; }

void checkCell(const json& cell) {
  const json& value = cell["value"];
  if (!value.is_number()) return;
  const auto number = value.get<double>();
  for (const json& label : cell["at"]["Statistics"]) {
    const auto& step = label.get_ref<const std::string&>();
    if (step == "One-Sided p") promiseOf(cell, within(number, 0, 1), "one tail");
    if (step == "Two-Sided p") promiseOf(cell, within(number, 0, 1), "both tails");
    if (step == "Proportion") promiseOf(cell, within(number, 0, 1), "a proportion");
    if (step == "Lower" || step == "Upper") promiseOf(cell, within(number, -1, 1), "a bound");
    if (step == "Successes") promiseOf(cell, number >= 0, "a count");
  }
}

void checkProcedure(const json& procedure) {
  if (procedure["status"] == "failed") {
    promiseOf(procedure, !procedure["messages"].empty(), "a refusal says why");
  }
  for (const json& table : procedure["tables"]) {
    promiseOf(table, !table["cells"].empty(), "no table without cells");
    for (const json& cell : table["cells"]) checkCell(cell);
  }
}

/// Gives the number of commands.
size_t run(workbench::MemoryDataset& data, const std::string& text,
           workbench::OutputDocument& document) {
  workbench::Session session;
  session.dataset = &data;
  session.document = &document;
  session.catalogue = &english();
  const workbench::SessionScope scope(session);
  const auto commands = workbench::splitCommands(text);
  for (const workbench::CommandTokens& command : commands) {
    session.command = &command;
    document.beginProcedure("Proportions", command.source());
    PROPORTI();
    document.finishProcedure(&data);
  }
  return commands.size();
}

}  // namespace

std::string runCommands(workbench::MemoryDataset& data, const std::string& text) {
  workbench::OutputDocument document;
  run(data, text, document);
  return rendered(document, workbench::Format::kJson);
}

std::string checkCommands(workbench::MemoryDataset& data, const std::string& text) {
  workbench::OutputDocument document;
  const size_t commands = run(data, text, document);
  for (const auto format :
       {workbench::Format::kText, workbench::Format::kMarkdown, workbench::Format::kCsv}) {
    rendered(document, format);
  }
  std::string result = rendered(document, workbench::Format::kJson);
  const json parsed = json::parse(result, nullptr, false);
  promise(!parsed.is_discarded(), "the JSON is well formed", result);
  promise(parsed["procedures"].size() == commands, "every command has its procedure");
  for (const json& procedure : parsed["procedures"]) checkProcedure(procedure);
  return result;
}

}  // namespace fuzz
