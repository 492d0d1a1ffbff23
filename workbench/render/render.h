/// Output formats.
#pragma once

#include <optional>
#include <ostream>
#include <string_view>

#include "workbench/output/output_document.h"

namespace workbench {

enum class Format { kText, kMarkdown, kJson, kCsv };

/// "text", "markdown", "json" or "csv"; nothing for any other name.
std::optional<Format> formatFromName(std::string_view name);
/// The format that a file's ending tells: .txt, .text, .md, .markdown, .json, .csv, whatever the
/// case; nothing for any other.
std::optional<Format> formatFromEnding(std::string_view path);

/// Writes the whole document. What goes wrong shows in the stream's state.
void render(const OutputDocument& document, Format format, std::ostream& out);

void renderText(const OutputDocument& document, std::ostream& out);
void renderMarkdown(const OutputDocument& document, std::ostream& out);
void renderJson(const OutputDocument& document, std::ostream& out);
void renderCsv(const OutputDocument& document, std::ostream& out);

/// Writes the messages alone, as text that is safe for a terminal.
void renderMessages(const OutputDocument& document, std::ostream& out);

}  // namespace workbench
