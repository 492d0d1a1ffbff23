/// A transcript with each composite label that occurs more than once written out at its first place
/// only, there with a name, and by its name from then on:
///
///     ... label#1 = composite "^1 = ^2" [var 0 show 2] [value var 0 1 pref 2] ...
///     ... label#1 ...
#pragma once

#include <string>

std::string withRepeatedLabelsNamed(const std::string& transcript);
