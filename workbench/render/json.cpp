#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "host/constants.h"
#include "workbench/render/number_text.h"
#include "workbench/render/render.h"

namespace workbench {
namespace {

/// A JSON string; bytes that are no UTF-8 become the replacement character.
std::string quoted(const std::string& text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string number(double value) {
  if (value == kSystemMissing) return "null";
  if (std::isnan(value)) return "\"NaN\"";
  if (std::isinf(value)) return value > 0 ? "\"Infinity\"" : "\"-Infinity\"";
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  return {buffer.data(), end};
}

std::string strings(const std::vector<std::string>& texts) {
  std::string result = "[";
  for (const std::string& text : texts) result += (result.size() > 1 ? "," : "") + quoted(text);
  return result + ']';
}

std::string splitObject(const ShownSplit& split) {
  std::string result = "{";
  for (const auto& [name, value] : split) {
    result += (result.size() > 1 ? "," : "") + quoted(name) + ':' + quoted(value);
  }
  return result + '}';
}

std::string noteObject(const DocumentNote& note) {
  return "{\"section\":" + std::to_string(note.section) + ",\"label\":" + quoted(note.label) +
         ",\"key\":" + quoted(note.key) + ",\"value\":" + quoted(note.value) + '}';
}

std::string messageObject(const DocumentMessage& message) {
  const char* severity = message.severity == Severity::kError ? "error" : "warning";
  std::string result =
      std::string("{\"severity\":\"") + severity + "\",\"level\":" + std::to_string(message.level) +
      ",\"key\":" + quoted(message.key) + ",\"arguments\":" + strings(message.arguments) +
      ",\"text\":" + quoted(message.text);
  if (!message.split.empty()) result += ",\"split\":" + splitObject(message.split);
  return result + '}';
}

/// Writes the items of a list, one after the other, with commas and line breaks.
template <typename List, typename Write>
void writeList(std::ostream& out, const List& list, Write write) {
  out << '[';
  bool first = true;
  for (const auto& item : list) {
    out << (first ? "" : ",\n");
    first = false;
    write(item);
  }
  out << ']';
}

class TableWriter {
 public:
  TableWriter(const Table& table, std::ostream& out) : table_(table), out_(out) {
    for (const int axis : {0, 1}) {
      for (const size_t d : table.displayOrder(axis)) order_.push_back(d);
    }
    for (const size_t d : order_) describeLeaves(d);
  }

  void write() {
    out_ << "{\"title\":" << quoted(table_.title().text)
         << ",\"split\":" << splitObject(table_.split()) << ",\"dimensions\":";
    writeList(out_, order_, [this](size_t d) { writeDimension(table_.dimensions()[d]); });
    out_ << ",\n\"cells\":";
    std::vector<size_t> cells(table_.cellCount());
    for (size_t i = 0; i < cells.size(); ++i) cells[i] = i;
    writeList(out_, cells, [this](size_t cell) { writeCell(cell); });
    out_ << '}';
  }

 private:
  struct Leaf {
    std::string path;
    bool isProbability;
  };

  /// `"name":[path]` of each leaf, made once and not per cell.
  void describeLeaves(size_t d) {
    const Dimension& dimension = table_.dimensions()[d];
    std::vector<Leaf> leaves;
    for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
      const auto& node = dimension.nodes()[static_cast<size_t>(dimension.leafNode(leaf))];
      leaves.push_back({quoted(dimension.label().text) + ':' + strings(dimension.path(leaf)),
                        isProbabilityColumn(node.label)});
    }
    leaves_.push_back(std::move(leaves));
  }

  void writeDimension(const Dimension& dimension) {
    out_ << "{\"name\":" << quoted(dimension.label().text) << ",\"axis\":\""
         << (dimension.axis == 0 ? "row" : "column") << "\",\"categories\":";
    writeChildren(dimension, 0);
    out_ << '}';
  }

  void writeChildren(const Dimension& dimension, int32_t parent) {
    writeList(out_, dimension.nodes()[static_cast<size_t>(parent)].children, [&](int32_t child) {
      const DimensionNode& node = dimension.nodes()[static_cast<size_t>(child)];
      out_ << "{\"label\":" << quoted(node.label.text) << ",\"key\":" << quoted(node.label.key);
      if (!node.footnotes.empty()) {
        out_ << ",\"notes\":";
        writeList(out_, node.footnotes, [this](const LabelData& note) {
          out_ << "{\"key\":" << quoted(note.key) << ",\"text\":" << quoted(note.text) << '}';
        });
      }
      if (node.leaf < 0) {
        out_ << ",\"categories\":";
        writeChildren(dimension, child);
      }
      out_ << '}';
    });
  }

  void writeCell(size_t index) {
    const TableCell& cell = table_.cell(index);
    bool isProbability = false;
    out_ << "{\"at\":{";
    bool first = true;
    for (size_t i = 0; i < order_.size(); ++i) {
      const int32_t leaf = table_.leafOf(index, order_[i]);
      if (leaf < 0) continue;
      const Leaf& described = leaves_[i][static_cast<size_t>(leaf)];
      out_ << (first ? "" : ",") << described.path;
      first = false;
      isProbability |= described.isProbability;
    }
    out_ << "},\"value\":" << number(cell.value)
         << ",\"text\":" << quoted(cellText(cell, isProbability));
    if (cell.note >= 0) {
      out_ << ",\"notes\":[" << quoted(table_.noteKeys()[static_cast<size_t>(cell.note)]) << ']';
    }
    out_ << '}';
  }

  const Table& table_;
  std::ostream& out_;
  std::vector<size_t> order_;
  std::vector<std::vector<Leaf>> leaves_;
};

void writeProcedure(const DocumentProcedure& procedure, std::ostream& out) {
  out << "{\"title\":" << quoted(procedure.title) << ",\"command\":" << quoted(procedure.command)
      << ",\"status\":\"" << (procedure.failed ? "failed" : "ok") << "\",\n\"notes\":";
  writeList(out, procedure.notes, [&](const DocumentNote& note) { out << noteObject(note); });
  out << ",\n\"messages\":";
  writeList(out, procedure.messages,
            [&](const DocumentMessage& message) { out << messageObject(message); });
  out << ",\n\"tables\":";
  writeList(out, procedure.tables, [&](const auto& table) { TableWriter(*table, out).write(); });
  out << '}';
}

}  // namespace

void renderJson(const OutputDocument& document, std::ostream& out) {
  out << "{\"schema\":\"proportions-output/1\",\"procedures\":";
  writeList(out, document.procedures(),
            [&](const auto& procedure) { writeProcedure(*procedure, out); });
  out << "}\n";
}

}  // namespace workbench
