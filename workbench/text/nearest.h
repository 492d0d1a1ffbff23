/// Guesses what a misspelt word was meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// The candidate that takes the fewest insertions, deletions, replacements and swaps of
/// neighbouring letters to reach from `word`, ignoring case. When none is near
/// (within about a third of the word), the first candidate that begins with the word, if that has
/// three letters or more; else empty. Of equally near candidates the first.
std::string nearest(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace workbench
