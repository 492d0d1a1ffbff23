#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/render/cell_texts.h"
#include "workbench/render/footnotes.h"
#include "workbench/render/render.h"
#include "workbench/render/text_plot.h"
#include "workbench/render/writer.h"
#include "workbench/results/grid.h"
#include "workbench/results/sentences.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

/// True when a line that starts like this would be an item of a list or a heading.
bool startsBlock(std::string_view text) {
  if (!text.empty() && std::string_view("-+#").find(text[0]) != std::string_view::npos) return true;
  const size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  return digits > 0 && digits + 1 < text.size() && (text[digits] == '.' || text[digits] == ')') &&
         text[digits + 1] == ' ';
}

/// A text that reads as itself: all that Markdown or HTML would take for a sign is escaped.
std::string escaped(std::string_view text) {
  constexpr std::string_view kSigns = "\\`*_[]|~$";
  std::string result;
  for (const char c : printable(text)) {
    if (c == '<') {
      result += "&lt;";
    } else if (c == '>') {
      result += "&gt;";
    } else if (c == '&') {
      result += "&amp;";
    } else {
      if (kSigns.find(c) != std::string_view::npos) result += '\\';
      result += c;
    }
  }
  if (startsBlock(result)) {
    const size_t sign = std::min(result.find_first_not_of("0123456789"), result.size());
    result.insert(sign, 1, '\\');
  }
  return result;
}

std::string superscript(size_t number) { return "<sup>" + Footnotes::letters(number) + "</sup>"; }

std::string joined(const std::vector<std::string_view>& path) {
  std::string result;
  for (const std::string_view label : path) {
    result += (result.empty() ? "" : ": ") + escaped(shownCategory(label));
  }
  return result;
}

class MarkdownTable {
 public:
  MarkdownTable(const Table& table, const RenderOptions& options, Writer& out)
      : grid_(table), texts_(table, options), out_(out) {}

  void write() {
    out_ << "### " << escaped(tableHeading(grid_.table())) << "\n\n";
    writeHeader();
    for (size_t row = 0; row < grid_.rows().placeCount(); ++row) writeRow(row);
    out_ << '\n';
    for (size_t i = 0; i < footnotes_.texts().size(); ++i) {
      out_ << superscript(i) << ' ' << escaped(footnotes_.texts()[i]) << "\n\n";
    }
  }

 private:
  const Dimension& dimension(size_t position) const { return grid_.table().dimensions()[position]; }

  void writeHeader() {
    std::string alignment = "|";
    out_ << '|';
    for (const size_t d : grid_.rows().dimensions()) {
      out_ << ' ' << escaped(dimension(d).label().text) << " |";
      alignment += " :--- |";
    }
    for (size_t c = 0; c < grid_.columns().placeCount(); ++c) {
      out_ << ' ' << columnHeading(c) << " |";
      alignment += " ---: |";
    }
    out_ << '\n' << alignment << '\n';
  }

  std::string columnHeading(size_t column) {
    const GridAxis& axis = grid_.columns();
    std::string heading;
    for (size_t d = 0; d < axis.dimensions().size(); ++d) {
      heading += (heading.empty() ? "" : ": ") + joined(axis.path(column, d));
      const int32_t node = axis.node(column, d);
      if (node < 0) continue;
      for (const LabelData& note : dimension(axis.dimensions()[d]).footnotes(node)) {
        heading += superscript(footnotes_.numberOf(note.text));
      }
    }
    return heading;
  }

  void writeRow(size_t row) {
    const GridAxis& axis = grid_.rows();
    out_ << '|';
    bool same = row > 0;  // an outer label stands once, at the first of its rows
    for (size_t d = 0; d < axis.dimensions().size(); ++d) {
      same = same && d + 1 < axis.dimensions().size() && axis.node(row, d) == axis.node(row - 1, d);
      out_ << ' ' << (same ? "" : joined(axis.path(row, d))) << " |";
    }
    for (size_t c = 0; c < grid_.columns().placeCount(); ++c) {
      out_ << ' ' << cellText(grid_.cell(row, c)) << " |";
    }
    out_ << '\n';
  }

  std::string cellText(uint32_t cell) {
    if (cell == Grid::kNoCell) return "";
    std::string text = texts_(cell);
    if (text[0] == '<') text.replace(0, 1, "&lt;");
    const int32_t note = grid_.table().cell(cell).note;
    if (note >= 0) {
      const std::string& noteText = grid_.table().notes()[static_cast<size_t>(note)].text;
      text += superscript(footnotes_.numberOf(noteText));
    }
    return text;
  }

  const Grid grid_;
  const CellTexts texts_;
  Footnotes footnotes_;
  Writer& out_;
};

/// A block whose text is shown as it stands; its fence is longer than any in the text.
void writeCode(std::string_view text, std::string_view indent, Writer& out) {
  size_t longest = 2;
  for (size_t at = 0, run = 0; at < text.size(); ++at) {
    run = text[at] == '`' ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  const std::string fence(longest + 1, '`');
  out << indent << fence << '\n';
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    out << indent << printable(text.substr(start, end - start)) << '\n';
    start = end + 1;
  }
  out << indent << fence << '\n';
}

/// The first line of a message as text, what follows as it stands.
void writeMessage(const DocumentMessage& message, Writer& out) {
  const std::string_view text = message.text;
  const size_t end = text.find('\n');
  out << "- **" << (message.severity == Severity::kError ? "Error:" : "Warning:") << "** "
      << escaped(text.substr(0, end)) << '\n';
  if (end == std::string_view::npos) return;
  out << '\n';
  writeCode(text.substr(end + 1), "  ", out);
}

/// The bars of a table as a block of text.
void writePlot(const Table& table, const DocumentProcedure& procedure, const RenderOptions& options,
               Writer& out) {
  std::ostringstream plot;
  Writer lines(plot);
  writeTextPlot(table, procedure, options, lines);
  lines.finish();
  if (plot.str().empty()) return;
  out << "```\n" << plot.str().substr(0, plot.str().find_last_not_of('\n') + 1) << "\n```\n\n";
}

void writeSentences(const DocumentProcedure& procedure, const RenderOptions& options, Writer& out) {
  for (const std::string& sentence : reportSentences(procedure, options.digits)) {
    out << "- " << escaped(sentence) << '\n';
  }
  out << '\n';
}

void writeProcedure(const DocumentProcedure& procedure, const RenderOptions& options, Writer& out) {
  out << "## " << escaped(procedure.title) << "\n\n";
  if (!procedure.command.empty()) {
    writeCode(procedure.command, "", out);
    out << '\n';
  }
  for (const DocumentMessage& message : procedure.messages) writeMessage(message, out);
  if (!procedure.messages.empty()) out << '\n';
  for (const auto& table : procedure.tables) {
    MarkdownTable(*table, options, out).write();
    if (options.plot) writePlot(*table, procedure, options, out);
  }
  if (procedure.casesTable != nullptr) {
    MarkdownTable(*procedure.casesTable, options, out).write();
  }
  if (options.sentences) writeSentences(procedure, options, out);
  for (const DocumentNote& note : procedure.notes) {
    out << "- **" << escaped(note.label) << ":** " << escaped(note.value) << '\n';
  }
  if (!procedure.notes.empty()) out << '\n';
}

}  // namespace

void renderMarkdown(const OutputDocument& document, const RenderOptions& options,
                    std::ostream& stream) {
  Writer out(stream);
  for (const auto& procedure : document.procedures()) writeProcedure(*procedure, options, out);
  out.finish();
}

}  // namespace workbench
