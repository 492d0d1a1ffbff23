#include "workbench/render/render.h"

#include <algorithm>
#include <array>
#include <string>

namespace workbench {
namespace {

struct FormatEntry {
  std::string_view name;
  std::string_view ending;
  Format format;
  void (*render)(const OutputDocument&, const RenderOptions&, std::ostream&);
};

constexpr std::array<FormatEntry, 5> kFormats{
    {{"text", ".txt", Format::kText, renderText},
     {"markdown", ".md", Format::kMarkdown, renderMarkdown},
     {"html", ".html", Format::kHtml, renderHtml},
     {"json", ".json", Format::kJson, renderJson},
     {"csv", ".csv", Format::kCsv, renderCsv}}};

std::string lowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return result;
}

std::string listOf(std::string_view FormatEntry::*text) {
  std::string list;
  for (const FormatEntry& entry : kFormats) {
    list.append(list.empty() ? "" : ", ").append(entry.*text);
  }
  return list;
}

}  // namespace

std::optional<Format> formatFromName(std::string_view name) {
  const std::string lower = lowerCase(name);
  for (const FormatEntry& entry : kFormats) {
    if (entry.name == lower) return entry.format;
  }
  return std::nullopt;
}

std::optional<Format> formatFromEnding(std::string_view path) {
  const std::string lower = lowerCase(path);
  for (const FormatEntry& entry : kFormats) {
    if (lower.size() > entry.ending.size() && lower.ends_with(entry.ending)) return entry.format;
  }
  return std::nullopt;
}

std::string formatNames() { return listOf(&FormatEntry::name); }

std::string formatEndings() { return listOf(&FormatEntry::ending); }

void render(const OutputDocument& document, Format format, const RenderOptions& options,
            std::ostream& out) {
  for (const FormatEntry& entry : kFormats) {
    if (entry.format == format) entry.render(document, options, out);
  }
}

}  // namespace workbench
