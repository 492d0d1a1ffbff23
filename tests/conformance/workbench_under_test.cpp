// The workbench over a data set in memory as a host under test.
#include <cmath>
#include <cstdio>

#include "tests/conformance/host_under_test.h"
#include "tests/memory/memory_dataset.h"
#include "workbench/catalogue/catalogue.h"
#include "workbench/output/output_document.h"
#include "workbench/parser/command_text.h"
#include "workbench/session/session.h"

namespace conformance {
namespace {

void add(workbench::MemoryDataset& dataset, const Column& column) {
  workbench::Variable variable;
  variable.name = column.name;
  variable.label = column.label;
  variable.missingNumbers = column.missingNumbers;
  variable.missingLow = column.missingLow;
  variable.missingHigh = column.missingHigh;
  variable.missingStrings = column.missingStrings;
  variable.numberLabels = column.numberLabels;
  variable.stringLabels = column.stringLabels;
  if (column.width > 0) {
    variable.kind = workbench::ValueKind::kString;
    variable.width = column.width;
    dataset.addStrings(variable, column.strings);
  } else {
    dataset.addNumbers(variable, column.numbers);
  }
}

std::string shown(double value) {
  if (value == kSystemMissing) return "missing";
  if (std::isnan(value)) return "NaN";
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

std::string pathOf(const workbench::Dimension& dimension, int32_t node) {
  std::string path;
  for (int32_t at = node; at > 0; at = dimension.node(at).parent) {
    const std::string& key = dimension.node(at).label.key;
    path = path.empty() ? key : key + " / " + path;
  }
  return path;
}

class WorkbenchUnderTest final : public OpenHost {
 public:
  explicit WorkbenchUnderTest(const Situation& situation)
      : catalogue_(workbench::Catalogue::parse("{}")),
        commands_(workbench::splitCommands(situation.command)) {
    for (const Column& column : situation.columns) add(dataset_, column);
    if (situation.weight >= 0) dataset_.setWeight(situation.weight);
    dataset_.setSplit(situation.split);
    dataset_.setSeparateSplitLayout(situation.separateLayout);
    dataset_.setChunkSize(situation.chunkSize);
    session_.dataset = &dataset_;
    session_.command = &commands_.at(0);
    session_.document = &document_;
    session_.catalogue = &catalogue_;
    scope_ = std::make_unique<workbench::SessionScope>(session_);
  }

  std::vector<std::string> cells() override {
    std::vector<std::string> lines;
    for (const auto& procedure : document_.procedures()) {
      for (const auto& table : procedure->tables) {
        for (size_t cell = 0; cell < table->cellCount(); ++cell) {
          lines.push_back(lineOf(*table, cell));
        }
      }
    }
    return lines;
  }

  std::vector<std::string> footnotes() override {
    std::vector<std::string> lines;
    for (const auto& procedure : document_.procedures()) {
      for (const auto& table : procedure->tables) collect(*table, lines);
    }
    return lines;
  }

 private:
  static std::string lineOf(const workbench::Table& table, size_t cell) {
    std::string split;
    for (const auto& [variable, value] : table.split()) split += value;
    std::string places;
    const auto& dimensions = table.dimensions();
    for (size_t i = 0; i < dimensions.size(); ++i) {
      const int32_t leaf = table.leafOf(cell, i);
      const std::string path =
          leaf < 0 ? "none" : pathOf(dimensions[i], dimensions[i].leafNode(leaf));
      if (dimensions[i].isSplit) {
        split += path;
      } else {
        places += (places.empty() ? "" : ", ") + path;
      }
    }
    std::string line = table.title().key + ": ";
    if (!split.empty()) line += "split " + split + ", ";
    line += places + " = " + shown(table.cell(cell).value);
    const int32_t note = table.cell(cell).note;
    if (note >= 0) line += " {" + table.notes()[static_cast<size_t>(note)].key + "}";
    return line;
  }

  static void collect(const workbench::Table& table, std::vector<std::string>& lines) {
    for (const workbench::Dimension& dimension : table.dimensions()) {
      const auto nodes = static_cast<int32_t>(dimension.nodes().size());
      for (int32_t node = 0; node < nodes; ++node) {
        const auto& footnotes = dimension.footnotes(node);
        if (footnotes.empty()) continue;
        std::string line = table.title().key + ": " + pathOf(dimension, node) + " ";
        for (const workbench::LabelData& note : footnotes) line += "{" + note.key + "}";
        lines.push_back(line);
      }
    }
  }

  workbench::MemoryDataset dataset_;
  workbench::Catalogue catalogue_;
  workbench::OutputDocument document_;
  std::vector<workbench::CommandTokens> commands_;
  workbench::Session session_;
  std::unique_ptr<workbench::SessionScope> scope_;
};

}  // namespace

std::unique_ptr<OpenHost> open(const Situation& situation) {
  return std::make_unique<WorkbenchUnderTest>(situation);
}

}  // namespace conformance
