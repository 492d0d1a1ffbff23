#include <string>
#include <string_view>

#include "workbench/render/cell_texts.h"
#include "workbench/render/json_text.h"
#include "workbench/render/render.h"
#include "workbench/render/writer.h"
#include "workbench/results/known_labels.h"
#include "workbench/results/sentences.h"

namespace workbench {
namespace {

/// Writes the items of a list, one after the other, with commas and line breaks.
template <typename List, typename Write>
void writeList(Writer& out, const List& list, Write write) {
  out << '[';
  bool first = true;
  for (const auto& item : list) {
    out << (first ? "" : ",\n");
    first = false;
    write(item);
  }
  out << ']';
}

template <typename List>
std::string strings(const List& texts) {
  std::string result = "[";
  for (const auto& text : texts) {
    if (result.size() > 1) result += ',';
    result += jsonString(text);
  }
  return result + ']';
}

void writeNote(Writer& out, const DocumentNote& note) {
  out << "{\"section\":" << std::to_string(note.section) << ",\"label\":" << jsonString(note.label)
      << ",\"key\":" << jsonString(note.key) << ",\"value\":" << jsonString(note.value) << '}';
}

void writeMessage(Writer& out, const DocumentMessage& message) {
  out << "{\"severity\":\"" << (message.severity == Severity::kError ? "error" : "warning")
      << "\",\"level\":" << std::to_string(message.level) << ",\"key\":" << jsonString(message.key)
      << ",\"arguments\":" << strings(message.arguments)
      << ",\"text\":" << jsonString(message.text);
  if (!message.split.empty()) out << ",\"split\":" << splitObject(message.split);
  out << '}';
}

std::string exactValue(const LabelValue& value) {
  if (const auto* number = std::get_if<double>(&value.exact)) return jsonNumber(*number);
  return jsonString(std::get<std::string>(value.exact));
}

/// What a label shows, for programs that read it.
std::string facts(const LabelData& label) {
  std::string result;
  if (!label.variables.empty()) result += ",\"variables\":" + strings(label.variables);
  if (!label.values.empty()) {
    result += ",\"values\":[";
    for (const LabelValue& value : label.values) {
      if (&value != &label.values.front()) result += ',';
      result += exactValue(value);
    }
    result += ']';
  }
  if (label.number && isIntervalGroup(label.key)) {
    result += ",\"level\":" + jsonNumber(*label.number);
  }
  return result;
}

/// Writes one table. What a leaf contributes to a cell is made once and not for every cell.
class TableWriter {
 public:
  TableWriter(const Table& table, Writer& out)
      : table_(table), out_(out), texts_(table, RenderOptions()) {
    for (const int axis : {0, 1}) {
      for (const size_t d : table.displayOrder(axis)) order_.push_back(d);
    }
    for (const size_t d : order_) leaves_.push_back(leafMembers(table.dimensions()[d]));
    for (const CellNoteText& note : table.notes()) notes_.push_back(jsonString(note.key));
  }

  void write() {
    out_ << "{\"title\":" << jsonString(table_.title().text)
         << ",\"split\":" << splitObject(table_.split()) << ",\n\"dimensions\":";
    writeList(out_, order_, [this](size_t d) { writeDimension(table_.dimensions()[d]); });
    out_ << ",\n\"cells\":[";
    for (size_t cell = 0; cell < table_.cellCount(); ++cell) {
      out_ << (cell == 0 ? "\n" : ",\n");
      writeCell(cell);
    }
    out_ << "]}";
  }

 private:
  /// `"name":[path]` of each leaf.
  static std::vector<std::string> leafMembers(const Dimension& dimension) {
    const std::string name = jsonString(dimension.label().text) + ':';
    std::vector<std::string> members;
    for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
      members.push_back(name + strings(dimension.path(leaf)));
    }
    return members;
  }

  void writeDimension(const Dimension& dimension) {
    const LabelData& label = dimension.label();
    out_ << "{\"name\":" << jsonString(label.text) << ",\"axis\":\""
         << (dimension.axis == 1 ? "column" : "row") << '"';
    if (label.variables.size() == 1) out_ << ",\"variable\":" << jsonString(label.variables[0]);
    out_ << ",\"categories\":";
    writeChildren(dimension, 0);
    out_ << '}';
  }

  void writeChildren(const Dimension& dimension, int32_t parent) {
    writeList(out_, dimension.node(parent).children, [&](int32_t child) {
      const DimensionNode& node = dimension.node(child);
      out_ << "{\"label\":" << jsonString(node.label.text)
           << ",\"key\":" << jsonString(node.label.key) << facts(node.label);
      if (const auto& footnotes = dimension.footnotes(child); !footnotes.empty()) {
        out_ << ",\"notes\":";
        writeList(out_, footnotes, [this](const LabelData& note) {
          out_ << "{\"key\":" << jsonString(note.key) << ",\"text\":" << jsonString(note.text)
               << '}';
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
    out_ << "{\"at\":{";
    bool first = true;
    for (size_t i = 0; i < order_.size(); ++i) {
      const int32_t leaf = table_.leafOf(index, order_[i]);
      if (leaf < 0) continue;
      out_ << (first ? "" : ",") << leaves_[i][static_cast<size_t>(leaf)];
      first = false;
    }
    const TableCell& cell = table_.cell(index);
    // A number's text has no character that JSON would escape.
    out_ << "},\"value\":" << jsonNumber(cell.value) << ",\"text\":\"" << texts_(index) << '"';
    if (cell.note >= 0) {
      out_ << ",\"notes\":[" << notes_[static_cast<size_t>(cell.note)] << ']';
    }
    out_ << '}';
  }

  const Table& table_;
  Writer& out_;
  CellTexts texts_;
  std::vector<size_t> order_;
  std::vector<std::vector<std::string>> leaves_;
  std::vector<std::string> notes_;
};

void writeProcedure(Writer& out, const DocumentProcedure& procedure, bool withSentences) {
  out << "{\"title\":" << jsonString(procedure.title)
      << ",\"command\":" << jsonString(procedure.command) << ",\"status\":\""
      << (procedure.failed ? "failed" : "ok") << "\",\n\"notes\":";
  writeList(out, procedure.notes, [&](const DocumentNote& note) { writeNote(out, note); });
  out << ",\n\"messages\":";
  writeList(out, procedure.messages,
            [&](const DocumentMessage& message) { writeMessage(out, message); });
  out << ",\n\"tables\":";
  writeList(out, procedure.tables, [&](const auto& table) { TableWriter(*table, out).write(); });
  if (withSentences) {
    out << ",\n\"sentences\":";
    writeList(out, reportSentences(procedure, std::nullopt),
              [&](const std::string& sentence) { out << jsonString(sentence); });
  }
  if (procedure.cases) {
    out << ",\n\"cases\":";
    writeJsonCases(*procedure.cases, out);
  }
  if (!procedure.advice.empty()) {
    out << ",\n\"advice\":";
    writeList(out, procedure.advice, [&](const Advice& advice) { writeJsonAdvice(advice, out); });
  }
  out << '}';
}

}  // namespace

void renderJson(const OutputDocument& document, const RenderOptions& options,
                std::ostream& stream) {
  Writer out(stream);
  out << "{\"schema\":\"proportions-output/1\",\"procedures\":";
  writeList(out, document.procedures(),
            [&](const auto& procedure) { writeProcedure(out, *procedure, options.sentences); });
  out << "}\n";
  out.finish();
}

}  // namespace workbench
