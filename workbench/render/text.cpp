#include <algorithm>
#include <string>
#include <string_view>

#include "workbench/render/render.h"
#include "workbench/render/text_table.h"
#include "workbench/render/wrap.h"
#include "workbench/render/writer.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr size_t kTextWidth = 100;

/// Calls visit(line) for each line of a text.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    visit(text.substr(start, end - start));
    start = end + 1;
  }
}

void writeWrapped(std::string_view text, std::string_view lead, Writer& out) {
  std::string start(lead);
  for (const std::string& line : wrapText(printable(text), kTextWidth - displayWidth(lead))) {
    out << start << line << '\n';
    start.assign(displayWidth(lead), ' ');
  }
}

/// A text of one line is broken where it is too long; the lines of a longer one stay as they are,
/// for they may point at places of each other.
void writeMessage(const DocumentMessage& message, Writer& out) {
  const std::string_view lead = message.severity == Severity::kError ? "Error: " : "Warning: ";
  if (message.text.find('\n') == std::string::npos) {
    writeWrapped(message.text, lead, out);
    return;
  }
  out << lead;
  forEachLine(message.text, [&](std::string_view line) { out << printable(line) << '\n'; });
}

void writeMessages(const DocumentProcedure& procedure, Writer& out) {
  for (const DocumentMessage& message : procedure.messages) writeMessage(message, out);
}

void writeNotes(const DocumentProcedure& procedure, Writer& out) {
  size_t width = 0;
  for (const DocumentNote& note : procedure.notes) {
    width = std::max(width, displayWidth(printable(note.label)));
  }
  out << "Notes\n";
  for (const DocumentNote& note : procedure.notes) {
    writeWrapped(note.value, "  " + placed(printable(note.label), width, Align::kLeft) + "  ", out);
  }
  out << '\n';
}

void writeProcedure(const DocumentProcedure& procedure, Writer& out) {
  out << printable(procedure.title) << '\n';
  if (!procedure.command.empty()) {
    forEachLine(procedure.command,
                [&](std::string_view line) { out << "  " << printable(line) << '\n'; });
  }
  out << '\n';
  writeMessages(procedure, out);
  if (!procedure.messages.empty()) out << '\n';
  for (const auto& table : procedure.tables) writeTextTable(*table, out);
  if (!procedure.notes.empty()) writeNotes(procedure, out);
}

}  // namespace

void renderText(const OutputDocument& document, std::ostream& stream) {
  Writer out(stream);
  for (const auto& procedure : document.procedures()) writeProcedure(*procedure, out);
  out.finish();
}

void renderMessages(const OutputDocument& document, std::ostream& stream) {
  Writer out(stream);
  for (const auto& procedure : document.procedures()) writeMessages(*procedure, out);
  out.finish();
}

}  // namespace workbench
