#include "workbench/render/report_text.h"

#include <algorithm>

namespace workbench {

std::string tableHeading(const Table& table) {
  std::string text = table.title().text;
  for (size_t i = 0; i < table.split().size(); ++i) {
    const auto& [name, value] = table.split()[i];
    text += (i == 0 ? ": " : ", ") + name + " = " + value;
  }
  return text;
}

std::string Footnotes::letter(size_t index) {
  std::string result;
  for (++index; index > 0; index = (index - 1) / 26) {
    result.insert(result.begin(), static_cast<char>('a' + (index - 1) % 26));
  }
  return result;
}

std::string Footnotes::mark(const std::string& text) {
  auto found = std::find(texts_.begin(), texts_.end(), text);
  if (found == texts_.end()) found = texts_.insert(texts_.end(), text);
  return letter(static_cast<size_t>(found - texts_.begin()));
}

}  // namespace workbench
