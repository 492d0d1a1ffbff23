#include <algorithm>
#include <string>
#include <string_view>

#include "workbench/render/render.h"
#include "workbench/render/text_block.h"
#include "workbench/render/text_plot.h"
#include "workbench/render/text_table.h"
#include "workbench/render/wrap.h"
#include "workbench/render/writer.h"
#include "workbench/results/sentences.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr size_t kNarrowIndent = 4;

/// Calls visit(line) for each line of a text.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    visit(text.substr(start, end - start));
    start = end + 1;
  }
}

/// A text after a lead, the lines that follow indented like the first; on lines of its own where
/// the lead leaves it no room.
void writeWrapped(std::string_view text, std::string_view lead, size_t width, Writer& out) {
  size_t indent = widthOf(lead);
  std::string start(lead);
  if (2 * indent > width) {
    out << trimmedLine(start) << '\n';
    indent = kNarrowIndent;
    start.assign(indent, ' ');
  }
  for (const std::string& line : wrapText(printable(text), width - indent)) {
    out << start << line << '\n';
    start.assign(indent, ' ');
  }
}

/// A text of one line is broken where it is too long; the lines of a longer one stay as they are,
/// for they may point at places of each other.
void writeMessage(const DocumentMessage& message, size_t width, Writer& out) {
  const std::string_view lead = message.severity == Severity::kError ? "Error: " : "Warning: ";
  if (message.text.find('\n') == std::string::npos) {
    writeWrapped(message.text, lead, width, out);
    return;
  }
  out << lead;
  forEachLine(message.text, [&](std::string_view line) { out << printable(line) << '\n'; });
}

void writeNotes(const DocumentProcedure& procedure, size_t width, Writer& out) {
  size_t labels = 0;
  for (const DocumentNote& note : procedure.notes) {
    labels = std::max(labels, widthOf(printable(note.label)));
  }
  out << "Notes\n";
  for (const DocumentNote& note : procedure.notes) {
    const std::string lead = "  " + placed(printable(note.label), labels, Align::kLeft) + "  ";
    writeWrapped(note.value, lead, width, out);
  }
  out << '\n';
}

/// The command as it was given; lines that are too long are broken at blanks.
void writeCommand(const DocumentProcedure& procedure, size_t width, Writer& out) {
  forEachLine(procedure.command, [&](std::string_view line) {
    const std::string shown = printable(line);
    const size_t indent = std::min(shown.find_first_not_of(' '), shown.size());
    const std::string lead = "  " + shown.substr(0, indent);
    size_t count = 0;
    for (const std::string& part : wrapText(shown.substr(indent), width - lead.size() - 2)) {
      out << lead << (count++ > 0 ? "  " : "") << part << '\n';
    }
  });
}

void writeSentences(const DocumentProcedure& procedure, const RenderOptions& options, Writer& out) {
  const std::vector<std::string> sentences = reportSentences(procedure, options.digits);
  if (sentences.empty()) return;
  out << "Sentences\n";
  for (const std::string& sentence : sentences) writeWrapped(sentence, "  - ", options.width, out);
  out << '\n';
}

void writeProcedure(const DocumentProcedure& procedure, const RenderOptions& options, Writer& out) {
  out << printable(procedure.title) << '\n';
  if (!procedure.command.empty()) writeCommand(procedure, options.width, out);
  out << '\n';
  for (const DocumentMessage& message : procedure.messages) {
    writeMessage(message, options.width, out);
  }
  if (!procedure.messages.empty()) out << '\n';
  for (const auto& table : procedure.tables) {
    writeTextTable(*table, options, out);
    if (options.plot) writeTextPlot(*table, procedure, options, out);
  }
  if (procedure.casesTable != nullptr) writeTextTable(*procedure.casesTable, options, out);
  if (options.sentences) writeSentences(procedure, options, out);
  if (!procedure.notes.empty()) writeNotes(procedure, options.width, out);
}

}  // namespace

void renderText(const OutputDocument& document, const RenderOptions& options,
                std::ostream& stream) {
  Writer out(stream);
  for (const auto& procedure : document.procedures()) writeProcedure(*procedure, options, out);
  out.finish();
}

}  // namespace workbench
