#include "workbench/render/render.h"

#include <algorithm>
#include <array>
#include <string>

namespace workbench {
namespace {

struct FormatEntry {
  std::string_view name;
  std::array<std::string_view, 2> endings;
  Format format;
  void (*render)(const OutputDocument&, const RenderOptions&, std::ostream&);
};

constexpr std::array<FormatEntry, 5> kFormats{
    {{"text", {".txt", ".text"}, Format::kText, renderText},
     {"markdown", {".md", ".markdown"}, Format::kMarkdown, renderMarkdown},
     {"html", {".html", ".htm"}, Format::kHtml, renderHtml},
     {"json", {".json", ".json"}, Format::kJson, renderJson},
     {"csv", {".csv", ".csv"}, Format::kCsv, renderCsv}}};

std::string lowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return result;
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
    for (const std::string_view ending : entry.endings) {
      const size_t length = ending.size();
      if (lower.size() > length && lower.compare(lower.size() - length, length, ending) == 0) {
        return entry.format;
      }
    }
  }
  return std::nullopt;
}

void render(const OutputDocument& document, Format format, const RenderOptions& options,
            std::ostream& out) {
  for (const FormatEntry& entry : kFormats) {
    if (entry.format == format) entry.render(document, options, out);
  }
}

}  // namespace workbench
