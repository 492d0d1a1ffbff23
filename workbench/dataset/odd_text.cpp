#include "workbench/dataset/odd_text.h"

#include <algorithm>

namespace workbench {

void KindTally::add(FieldKind kind, int64_t cases, Position position, std::string_view text) {
  if (kind == FieldKind::kMissing || cases == 0) return;
  Entry& entry = kinds_[static_cast<size_t>(kind)];
  if (entry.cases == 0 || position < entry.first) {
    entry.first = position;
    entry.text = text;
  }
  entry.cases += cases;
}

std::optional<KindTally::Odd> KindTally::odd() const {
  const auto* usual =
      std::max_element(kinds_.begin(), kinds_.end(),
                       [](const Entry& a, const Entry& b) { return a.cases < b.cases; });
  const auto usualKind = static_cast<FieldKind>(usual - kinds_.begin());
  int64_t others = 0;
  const Entry* first = nullptr;
  for (const Entry& each : kinds_) {
    if (&each == usual || each.cases == 0) continue;
    others += each.cases;
    if (first == nullptr || each.first < first->first) first = &each;
  }
  const bool few = others * 20 <= others + usual->cases;
  if (usualKind == FieldKind::kText || first == nullptr || !few) return {};
  return Odd{first->first, first->text, usualKind};
}

}  // namespace workbench
