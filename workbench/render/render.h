/// Output formats.
#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "workbench/output/output_document.h"

namespace workbench {

enum class Format { kText, kMarkdown, kHtml, kJson, kCsv };

/// "text", "markdown", "html", "json" or "csv"; nothing for any other name.
std::optional<Format> formatFromName(std::string_view name);
/// The names as a list for messages: "text, markdown, ...".
std::string formatNames();
/// The format that a file's ending tells, whatever the case; nothing for any other.
std::optional<Format> formatFromEnding(std::string_view path);
/// The endings that tell a format, as a list for messages: ".txt, .md, ...".
std::string formatEndings();

/// How results are shown. What a format has no use for, it ignores: the exact formats (JSON, CSV)
/// never round.
struct RenderOptions {
  size_t width = 100;         ///< columns of a line of text, at least kNarrowestWidth
  std::optional<int> digits;  ///< decimals of proportions and statistics, 0 to 15
  bool percent = false;       ///< proportions and their differences in percent
  bool plot = false;          ///< intervals as bars of characters, too
  bool sentences = false;     ///< a sentence to report for each row of a result
};

inline constexpr size_t kNarrowestWidth = 40;
inline constexpr int kMostDigits = 15;

/// Writes the whole document. What goes wrong shows in the stream's state.
void render(const OutputDocument& document, Format format, const RenderOptions& options,
            std::ostream& out);

void renderText(const OutputDocument& document, const RenderOptions& options, std::ostream& out);
void renderMarkdown(const OutputDocument& document, const RenderOptions& options,
                    std::ostream& out);
void renderHtml(const OutputDocument& document, const RenderOptions& options, std::ostream& out);
void renderJson(const OutputDocument& document, const RenderOptions& options, std::ostream& out);
void renderCsv(const OutputDocument& document, const RenderOptions& options, std::ostream& out);

}  // namespace workbench
