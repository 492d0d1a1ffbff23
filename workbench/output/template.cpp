#include "workbench/output/template.h"

#include <algorithm>

namespace workbench {
namespace {

using Elements = std::vector<std::string>;

/// Reads a number of up to three digits at `at` and moves past it; 0 when there is none.
size_t readIndex(std::string_view text, size_t& at) {
  size_t value = 0;
  const size_t start = at;
  while (at < text.size() && at - start < 3 && text[at] >= '0' && text[at] <= '9') {
    value = value * 10 + static_cast<size_t>(text[at++] - '0');
  }
  return value;
}

/// Copies a text, with fill(index) for each marker followed by a number from 1 to `count`.
template <typename Fill>
void copyFilling(std::string_view text, char marker, size_t count, std::string& out, Fill fill) {
  for (size_t at = 0; at < text.size();) {
    if (text[at] == marker) {
      size_t next = at + 1;
      const size_t index = readIndex(text, next);
      if (index >= 1 && index <= count) {
        fill(index - 1);
        at = next;
        continue;
      }
    }
    out += text[at++];
  }
}

/// How many items of the list make one element: the largest number that the first form names.
size_t partsOfElement(std::string_view form) {
  size_t parts = 1;
  for (size_t at = form.find('%'); at != std::string_view::npos; at = form.find('%', at)) {
    parts = std::max(parts, readIndex(form, ++at));
  }
  return parts;
}

void fillElements(std::string_view first, std::string_view rest, const Elements& list,
                  std::string& out) {
  const size_t parts = partsOfElement(first);
  for (size_t start = 0; start < list.size(); start += parts) {
    const size_t count = std::min(parts, list.size() - start);
    copyFilling(start == 0 ? first : rest, start == 0 ? '%' : '^', count, out,
                [&](size_t index) { out += list[start + index]; });
  }
}

/// Fills the run that starts at text[at] and moves past it; false when what stands there is none.
bool fillRun(std::string_view text, size_t& at, const std::vector<TemplateItem>& items,
             std::string& out) {
  const size_t firstEnd = text.find(':', at);
  if (firstEnd == std::string_view::npos) return false;
  const size_t restEnd = text.find(":]", firstEnd + 1);
  if (restEnd == std::string_view::npos) return false;
  size_t next = restEnd + 2;
  const size_t index = readIndex(text, next);
  if (index < 1 || index > items.size() || !items[index - 1].isList) return false;
  fillElements(text.substr(at + 1, firstEnd - at - 1),
               text.substr(firstEnd + 1, restEnd - firstEnd - 1), items[index - 1].elements, out);
  at = next;
  return true;
}

}  // namespace

std::string fillTemplate(std::string_view text, const std::vector<TemplateItem>& items) {
  std::string result;
  for (size_t at = 0; at < text.size();) {
    if (text[at] == '[' && fillRun(text, at, items, result)) continue;
    // Up to the next bracket there are plain placeholders only.
    const size_t end = std::min(text.find('[', at + 1), text.size());
    copyFilling(text.substr(at, end - at), '^', items.size(), result,
                [&](size_t index) { result += items[index].text; });
    at = end;
  }
  return result;
}

std::string fillTemplate(std::string_view text, const std::vector<std::string>& arguments) {
  std::vector<TemplateItem> items(arguments.size());
  for (size_t i = 0; i < arguments.size(); ++i) items[i].text = arguments[i];
  return fillTemplate(text, items);
}

}  // namespace workbench
