#include "workbench/render/footnotes.h"

#include <algorithm>
#include <array>

namespace workbench {
namespace {

struct Mark {
  const char* letter;
  const char* superscript;
};

constexpr std::array<Mark, 25> kMarks{{{"a", "ᵃ"}, {"b", "ᵇ"}, {"c", "ᶜ"}, {"d", "ᵈ"}, {"e", "ᵉ"},
                                       {"f", "ᶠ"}, {"g", "ᵍ"}, {"h", "ʰ"}, {"i", "ⁱ"}, {"j", "ʲ"},
                                       {"k", "ᵏ"}, {"l", "ˡ"}, {"m", "ᵐ"}, {"n", "ⁿ"}, {"o", "ᵒ"},
                                       {"p", "ᵖ"}, {"r", "ʳ"}, {"s", "ˢ"}, {"t", "ᵗ"}, {"u", "ᵘ"},
                                       {"v", "ᵛ"}, {"w", "ʷ"}, {"x", "ˣ"}, {"y", "ʸ"}, {"z", "ᶻ"}}};

std::string spelled(size_t number, const char* Mark::*form) {
  std::string result;
  for (size_t rest = number + 1; rest > 0; rest = (rest - 1) / kMarks.size()) {
    result.insert(0, kMarks[(rest - 1) % kMarks.size()].*form);
  }
  return result;
}

}  // namespace

std::string tableHeading(const Table& table) {
  std::string text = table.title().text;
  for (size_t i = 0; i < table.split().size(); ++i) {
    const auto& [name, value] = table.split()[i];
    text += (i == 0 ? ": " : ", ") + name + " = " + shownCategory(value);
  }
  return text;
}

std::string shownCategory(std::string_view text) {
  const bool blank = text.find_first_not_of(' ') == std::string_view::npos;
  return blank ? "(blank)" : std::string(text);
}

size_t Footnotes::numberOf(const std::string& text) {
  auto found = std::find(texts_.begin(), texts_.end(), text);
  if (found == texts_.end()) found = texts_.insert(texts_.end(), text);
  return static_cast<size_t>(found - texts_.begin());
}

std::string Footnotes::letters(size_t number) { return spelled(number, &Mark::letter); }
std::string Footnotes::superscript(size_t number) { return spelled(number, &Mark::superscript); }

}  // namespace workbench
