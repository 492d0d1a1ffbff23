#include <string>
#include <string_view>
#include <vector>

#include "workbench/render/html_methods.h"
#include "workbench/render/html_plot.h"
#include "workbench/render/html_table.h"
#include "workbench/render/html_text.h"
#include "workbench/render/render.h"
#include "workbench/render/report_style.h"
#include "workbench/render/writer.h"
#include "workbench/results/known_labels.h"
#include "workbench/results/sentences.h"

namespace workbench {
namespace {

/// The message's first line beside its severity, the lines that point at places below it.
void writeMessage(const DocumentMessage& message, Writer& out) {
  const bool isError = message.severity == Severity::kError;
  out << "<div class=\"message " << (isError ? "error" : "warning") << "\"><b>"
      << (isError ? "Error:" : "Warning:") << "</b> ";
  const size_t end = message.text.find('\n');
  out << htmlText(std::string_view(message.text).substr(0, end));
  if (end != std::string::npos) {
    out << "<pre>";
    for (size_t start = end + 1; start <= message.text.size();) {
      const size_t next = std::min(message.text.find('\n', start), message.text.size());
      out << htmlText(std::string_view(message.text).substr(start, next - start)) << '\n';
      start = next + 1;
    }
    out << "</pre>";
  }
  out << "</div>\n";
}

void writeCommand(std::string_view command, Writer& out) {
  out << "<pre><code>";
  for (size_t start = 0; start <= command.size();) {
    const size_t end = std::min(command.find('\n', start), command.size());
    out << htmlText(command.substr(start, end - start)) << (end < command.size() ? "\n" : "");
    start = end + 1;
  }
  out << "</code></pre>\n";
}

void writeSentences(const DocumentProcedure& procedure, const RenderOptions& options, Writer& out) {
  const std::vector<std::string> sentences = reportSentences(procedure, options.digits);
  if (sentences.empty()) return;
  out << "<h3>In words</h3>\n<ul class=\"sentences\">\n";
  for (const std::string& sentence : sentences) out << "<li>" << htmlText(sentence) << "</li>\n";
  out << "</ul>\n";
}

void writeAdvice(const DocumentProcedure& procedure, Writer& out) {
  if (procedure.advice.empty()) return;
  out << "<h3>Advice</h3>\n<ul>\n";
  for (const Advice& advice : procedure.advice) out << "<li>" << htmlText(advice.text) << "</li>\n";
  out << "</ul>\n";
}

void writeNotes(const DocumentProcedure& procedure, Writer& out) {
  if (procedure.notes.empty()) return;
  out << "<h3>Notes</h3>\n<dl class=\"notes\">\n";
  for (const DocumentNote& note : procedure.notes) {
    out << "<dt>" << htmlText(note.label) << "</dt><dd>" << htmlText(note.value) << "</dd>\n";
  }
  out << "</dl>\n";
}

/// What was analysed, by the first result; the title of the procedure where there is none.
std::string headingOf(const DocumentProcedure& procedure) {
  for (const auto& table : procedure.tables) {
    const auto kind = tableKindOf(table->title().key);
    if (!kind) continue;
    switch (kind->design) {
      case Design::kOneSample:
        return "One sample";
      case Design::kPaired:
        return "Paired samples";
      case Design::kIndependent:
        return "Independent samples";
    }
  }
  return procedure.title;
}

void writeProcedure(const DocumentProcedure& procedure, const RenderOptions& options, size_t number,
                    Writer& out) {
  const std::string id = "c" + std::to_string(number);
  out << "<section id=\"" << id << "\">\n<h2>" << htmlText(headingOf(procedure)) << "</h2>\n";
  if (!procedure.command.empty()) writeCommand(procedure.command, out);
  for (const DocumentMessage& message : procedure.messages) writeMessage(message, out);
  for (size_t i = 0; i < procedure.tables.size(); ++i) {
    const std::string tableId = id + "t" + std::to_string(i + 1);
    writeHtmlTable(*procedure.tables[i], options, tableId, out);
    writeHtmlPlot(*procedure.tables[i], procedure, options, tableId + "p", out);
  }
  writeSentences(procedure, options, out);
  if (procedure.casesTable != nullptr) {
    writeHtmlTable(*procedure.casesTable, options, id + "cases", out);
  }
  writeAdvice(procedure, out);
  writeHtmlMethods(procedure, out);
  writeNotes(procedure, out);
  out << "</section>\n";
}

}  // namespace

void renderHtml(const OutputDocument& document, const RenderOptions& options,
                std::ostream& stream) {
  Writer out(stream);
  // Nothing but the style below may act in the page, whatever a name or label holds.
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
         "style-src 'unsafe-inline'; img-src data:\">\n"
         "<link rel=\"icon\" href=\"data:,\">\n<title>Binomial proportions</title>\n<style>\n"
      << kReportStyle << "</style>\n</head>\n<body>\n<main>\n<h1>Binomial proportions</h1>\n";
  size_t number = 0;
  for (const auto& procedure : document.procedures()) {
    writeProcedure(*procedure, options, ++number, out);
  }
  out << "</main>\n</body>\n</html>\n";
  out.finish();
}

}  // namespace workbench
