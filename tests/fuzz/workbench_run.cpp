#include "tests/fuzz/workbench_run.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/fuzz/target.h"
#include "workbench/parser/command_text.h"
#include "workbench/session/session.h"

extern "C" void PROPORTI();

namespace fuzz {
namespace {

bool within(double value, double low, double high) { return value >= low && value <= high; }

/// `statistic` is the key of the cell's column.
void checkCell(const std::string& statistic, double value) {
  if (value == kSystemMissing || std::isnan(value)) return;
  if (statistic == "One-Sided p") promise(within(value, 0, 1), "one tail");
  if (statistic == "Two-Sided p") promise(within(value, 0, 1), "both tails");
  if (statistic == "Proportion") promise(within(value, 0, 1), "a proportion");
  if (statistic == "Lower" || statistic == "Upper") promise(within(value, -1, 1), "a bound");
  if (statistic == "Successes" || statistic == "Trials") promise(value >= 0, "a count");
}

void checkTable(const workbench::Table& table) {
  for (size_t i = 0; i < table.dimensions().size(); ++i) {
    const workbench::Dimension& dimension = table.dimensions()[i];
    if (dimension.label().key != "Statistics") continue;
    for (size_t cell = 0; cell < table.cellCount(); ++cell) {
      const workbench::DimensionNode& node =
          dimension.node(dimension.leafNode(table.leafOf(cell, i)));
      checkCell(node.label.key, table.cell(cell).value);
    }
  }
}

void checkDocument(const workbench::OutputDocument& document) {
  for (const auto& procedure : document.procedures()) {
    promise(!procedure->failed || !procedure->messages.empty(), "a refusal says why",
            procedure->command);
    for (const auto& table : procedure->tables) checkTable(*table);
  }
}

void run(workbench::MemoryDataset& data, const std::string& text,
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
  promise(document.procedures().size() == commands.size(), "every command has its procedure", text);
  checkDocument(document);
}

bool isControl(unsigned char letter) { return (letter < 0x20 && letter != '\n') || letter == 0x7F; }

}  // namespace

const workbench::Catalogue& english() {
  static const workbench::Catalogue catalogue = workbench::Catalogue::english();
  return catalogue;
}

std::string checkedRendering(const workbench::OutputDocument& document, workbench::Format format,
                             const workbench::RenderOptions& options) {
  std::ostringstream out;
  workbench::render(document, format, options, out);
  std::string text = out.str();
  if (format == workbench::Format::kJson) {
    promise(nlohmann::json::accept(text), "the JSON is well formed", text);
  } else if (format != workbench::Format::kCsv) {
    promise(std::none_of(text.begin(), text.end(), isControl), "no control characters", text);
  }
  return text;
}

void checkCommands(workbench::MemoryDataset& data, const std::string& text) {
  workbench::OutputDocument document;
  run(data, text, document);
}

std::string renderCommands(workbench::MemoryDataset& data, const std::string& text,
                           workbench::Format format) {
  workbench::OutputDocument document;
  run(data, text, document);
  return checkedRendering(document, format);
}

}  // namespace fuzz
