#include "workbench/render/html_text.h"

#include <algorithm>
#include <cstdint>
#include <utility>

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

/// Takes lines of Markdown one by one: paragraphs, lists and, indented by four blanks, formulas.
class MarkdownReader {
 public:
  void add(std::string_view line) {
    const size_t indent = std::min(line.find_first_not_of(' '), line.size());
    const bool isBlank = line.size() == indent;
    const bool isItem = line.substr(indent, 2) == "- ";
    const bool isFormula = !isBlank && indent >= 4 && text_.empty();
    if (isFormula) {
      open(Block::kFormula);
      result_ += htmlText(line.substr(4)) + '\n';
      return;
    }
    if (isBlank || isItem) endText();
    if (isBlank) open(Block::kNone);
    if (isItem) open(Block::kList);
    if (isBlank) return;
    if (block_ == Block::kFormula) open(Block::kNone);
    if (!text_.empty()) text_ += ' ';
    text_ += line.substr(isItem ? indent + 2 : indent);
  }

  std::string take() {
    endText();
    open(Block::kNone);
    return std::move(result_);
  }

 private:
  enum class Block : uint8_t { kNone, kList, kFormula };

  /// Closes the block at hand unless it is of that kind, and opens one of that kind.
  void open(Block block) {
    if (block == block_) return;
    if (block_ == Block::kList) result_ += "</ul>";
    if (block_ == Block::kFormula) result_ += "</pre>";
    if (block == Block::kList) result_ += "<ul>";
    if (block == Block::kFormula) result_ += "<pre>";
    block_ = block;
  }

  void endText() {
    if (text_.empty()) return;
    const bool isItem = block_ == Block::kList;
    result_ += (isItem ? "<li>" : "<p>") + inlineMarkup(text_) + (isItem ? "</li>" : "</p>");
    text_.clear();
  }

  Block block_ = Block::kNone;
  std::string text_;  // of the paragraph or item at hand
  std::string result_;
};

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
  MarkdownReader reader;
  for (size_t start = 0; start <= markdown.size();) {
    const size_t end = std::min(markdown.find('\n', start), markdown.size());
    reader.add(markdown.substr(start, end - start));
    start = end + 1;
  }
  return reader.take();
}

}  // namespace workbench
