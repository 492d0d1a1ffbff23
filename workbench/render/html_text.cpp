#include "workbench/render/html_text.h"

#include <algorithm>
#include <vector>

#include "workbench/text/display_width.h"

namespace workbench {
namespace {

std::string_view entityOf(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return "";
  }
}

/// The marks that stand in pairs around text.
struct Mark {
  std::string_view sign;
  std::string_view element;
};
constexpr Mark kMarks[] = {{"**", "strong"}, {"*", "em"}, {"`", "code"}};

/// Marked text in a line. A mark without its partner is a character like any other.
std::string inlineMarkup(std::string_view text) {
  std::string result;
  for (size_t at = 0; at < text.size();) {
    const auto* mark = std::find_if(std::begin(kMarks), std::end(kMarks), [&](const Mark& m) {
      return text.substr(at, m.sign.size()) == m.sign;
    });
    if (mark != std::end(kMarks)) {
      const size_t start = at + mark->sign.size();
      const size_t end = text.find(mark->sign, start);
      if (end != std::string_view::npos && end > start) {
        const std::string_view inner = text.substr(start, end - start);
        const bool isCode = mark->element == "code";
        result.append("<").append(mark->element).append(">");
        result += isCode ? htmlText(inner) : inlineMarkup(inner);
        result.append("</").append(mark->element).append(">");
        at = end + mark->sign.size();
        continue;
      }
    }
    const std::string_view entity = entityOf(text[at]);
    if (entity.empty()) {
      result += text[at];
    } else {
      result += entity;
    }
    ++at;
  }
  return result;
}

}  // namespace

std::string htmlEscaped(std::string_view printableText) {
  std::string result;
  result.reserve(printableText.size());
  for (const char c : printableText) {
    const std::string_view entity = entityOf(c);
    if (entity.empty()) {
      result += c;
    } else {
      result += entity;
    }
  }
  return result;
}

std::string htmlText(std::string_view text) { return htmlEscaped(printable(text)); }

std::string htmlFromMarkdown(std::string_view markdown) {
  std::string result;
  std::string paragraph;
  bool inList = false;
  const auto endParagraph = [&] {
    if (paragraph.empty()) return;
    result += (inList ? "<li>" : "<p>") + inlineMarkup(paragraph) + (inList ? "</li>" : "</p>");
    paragraph.clear();
  };
  const auto endList = [&] {
    if (inList) result += "</ul>";
    inList = false;
  };
  for (size_t start = 0; start <= markdown.size();) {
    const size_t end = std::min(markdown.find('\n', start), markdown.size());
    std::string_view line = markdown.substr(start, end - start);
    start = end + 1;
    const size_t indent = std::min(line.find_first_not_of(' '), line.size());
    const bool isItem = line.substr(indent, 2) == "- ";
    if (line.size() == indent || isItem) endParagraph();
    if (line.size() == indent) endList();
    if (isItem) {
      if (!inList) result += "<ul>";
      inList = true;
      line.remove_prefix(2);
    }
    line.remove_prefix(indent);
    if (!paragraph.empty() && !line.empty()) paragraph += ' ';
    paragraph += line;
  }
  endParagraph();
  endList();
  return result;
}

}  // namespace workbench
