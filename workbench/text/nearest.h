/// Guesses what a misspelt word was meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// The candidate that takes the fewest insertions, deletions, replacements and swaps of
/// neighbouring letters to reach from `word`, whatever the case of the letters; empty when none is
/// near (more than about a third of the word away).
std::string nearest(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace workbench
