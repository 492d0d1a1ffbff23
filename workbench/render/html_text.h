/// Text within HTML.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// A text that reads as itself wherever it stands, in an attribute too: nothing in it becomes
/// markup; control characters and marks that reorder or hide text show as escapes.
std::string htmlText(std::string_view text);

/// The same for text that is printable already.
std::string htmlEscaped(std::string_view printableText);

/// Paragraphs and lists of Markdown as HTML: emphasis, code and links as far as the project's own
/// documents use them.
std::string htmlFromMarkdown(std::string_view markdown);

}  // namespace workbench
