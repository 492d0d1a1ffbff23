#include "workbench/text/nearest.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "workbench/text/utf8.h"

namespace workbench {
namespace {

using Characters = std::vector<UChar32>;

Characters folded(std::string_view text) {
  Characters result;
  forEachCharacter(text, [&result](int32_t character, std::string_view) {
    result.push_back(u_foldCase(character, U_FOLD_CASE_DEFAULT));
  });
  return result;
}

/// Optimal string alignment distance (Damerau 1964; Levenshtein 1966).
size_t distance(const Characters& a, const Characters& b) {
  std::vector<size_t> beforeLast(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
    }
    beforeLast.swap(last);
    last.swap(row);
  }
  return last[b.size()];
}

bool startsWith(const Characters& text, const Characters& start) {
  return start.size() <= text.size() && std::equal(start.begin(), start.end(), text.begin());
}

}  // namespace

std::string nearest(std::string_view word, const std::vector<std::string>& candidates) {
  constexpr size_t kLongestWord = 200;
  constexpr size_t kShortestStart = 3;
  const Characters target = folded(word.substr(0, kLongestWord));
  std::string best;
  std::string longer;
  size_t bestDistance = std::max<size_t>(1, (target.size() + 1) / 3) + 1;
  for (const std::string& candidate : candidates) {
    const Characters letters = folded(std::string_view(candidate).substr(0, kLongestWord));
    const size_t away = distance(target, letters);
    if (away < bestDistance && away < std::max(target.size(), letters.size())) {
      bestDistance = away;
      best = candidate;
    }
    if (longer.empty() && target.size() >= kShortestStart && startsWith(letters, target)) {
      longer = candidate;
    }
  }
  return best.empty() ? longer : best;
}

}  // namespace workbench
