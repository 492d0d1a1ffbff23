// The recording host as a host under test.
#include "tests/conformance/host_under_test.h"
#include "tests/recording/host.h"
#include "tests/recording/output_document.h"

namespace conformance {
namespace {

recording::Value valueOf(const Column& column, size_t row) {
  if (column.width > 0) return column.strings[row];
  return column.numbers[row];
}

recording::ScriptVariable variableOf(const Column& column) {
  recording::ScriptVariable variable;
  variable.name = column.name;
  variable.label = column.label;
  variable.width = column.width;
  variable.formatType = column.width > 0 ? 1 : 0;
  variable.missingNumbers = column.missingNumbers;
  variable.missingLow = column.missingLow;
  variable.missingHigh = column.missingHigh;
  variable.missingStrings = column.missingStrings;
  variable.numberLabels = column.numberLabels;
  variable.stringLabels = column.stringLabels;
  return variable;
}

bool sameGroup(const recording::Script& script, const std::vector<recording::Value>& a,
               const std::vector<recording::Value>& b) {
  for (const VarIndex index : script.split) {
    if (a[static_cast<size_t>(index)] != b[static_cast<size_t>(index)]) return false;
  }
  return true;
}

recording::Script scriptOf(const Situation& situation) {
  recording::Script script;
  script.split = situation.split;
  script.weight = situation.weight;
  script.separateSplitLayout = situation.separateLayout;
  script.chunkSize = situation.chunkSize;
  script.command = situation.command;
  size_t rows = 0;
  for (const Column& column : situation.columns) {
    script.variables.push_back(variableOf(column));
    rows = column.width > 0 ? column.strings.size() : column.numbers.size();
  }
  std::vector<recording::Value> last;
  for (size_t row = 0; row < rows; ++row) {
    std::vector<recording::Value> values;
    for (const Column& column : situation.columns) values.push_back(valueOf(column, row));
    if (row > 0 && !sameGroup(script, last, values)) script.addEndMark();
    script.addCase(values);
    last = std::move(values);
  }
  if (!script.split.empty() && rows > 0) script.addEndMark();
  return script;
}

/// Without the quotes of a plain text label.
std::string plain(const std::string& label) {
  return label.size() > 1 && label.front() == '"' ? label.substr(1, label.size() - 2) : label;
}

std::string pathOf(const recording::Node& node) {
  if (node.parent == nullptr) return "";
  const std::string above = pathOf(*node.parent);
  return above.empty() ? plain(node.label) : above + " / " + plain(node.label);
}

class RecordingUnderTest final : public OpenHost {
 public:
  explicit RecordingUnderTest(const Situation& situation) : host_(scriptOf(situation)) {}

  std::vector<std::string> cells() override {
    std::vector<std::string> lines;
    for (const auto& table : recording::currentOutput().tables) {
      for (const std::string& place : table->order) {
        const recording::CellState& cell = table->cells.at(place);
        std::string line = heading(*table) + place + " = " + recording::shown(cell.number);
        for (const std::string& note : cell.notes) line += " {" + plain(note) + "}";
        lines.push_back(unquoted(line));
      }
    }
    return lines;
  }

  std::vector<std::string> footnotes() override {
    std::vector<std::string> lines;
    for (const auto& table : recording::currentOutput().tables) {
      for (const auto& dimension : table->dimensions) collect(*table, *dimension, lines);
    }
    return lines;
  }

 private:
  static std::string heading(const recording::TableState& table) {
    return table.title + ": " + (table.split.empty() ? "" : table.split + ", ");
  }

  /// "A" | "B" / "C" as A, B / C.
  static std::string unquoted(const std::string& line) {
    std::string text;
    for (size_t i = 0; i < line.size(); ++i) {
      if (line.compare(i, 3, " | ") == 0) {
        text += ", ";
        i += 2;
      } else if (line[i] != '"') {
        text += line[i];
      }
    }
    return text;
  }

  static void collect(const recording::TableState& table, const recording::Node& node,
                      std::vector<std::string>& lines) {
    if (!node.footnotes.empty()) {
      std::string line = table.title + ": " + pathOf(node) + " ";
      for (const std::string& note : node.footnotes) line += "{" + plain(note) + "}";
      lines.push_back(line);
    }
    for (const auto& child : node.children) collect(table, *child, lines);
  }

  recording::Host host_;
};

}  // namespace

std::unique_ptr<OpenHost> open(const Situation& situation) {
  return std::make_unique<RecordingUnderTest>(situation);
}

}  // namespace conformance
