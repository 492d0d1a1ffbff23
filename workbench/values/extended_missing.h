/// Missing values that have a letter: .a to .z, and ._ of transport and data files that know it.
///
/// A variable that has them holds each as a number of its own, in the order of the letters and
/// beyond every value that the files can tell from a missing one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbench {

/// Where the numbers of ._, .a, ..., .z lie.
inline constexpr double kFirstExtendedMissing = 0x1p1023;
inline constexpr double kLastExtendedMissing = 0x1p1023 * (1.0 + 26.0 / 4096.0);

/// True when no value may be that number.
inline bool isExtendedMissing(double value) {
  return value >= kFirstExtendedMissing && value <= kLastExtendedMissing;
}

/// The number of '_' or a small letter; nothing for any other character.
std::optional<double> extendedMissing(char letter);

/// ".a" for the number of 'a' and so on; empty for every other number.
std::string extendedMissingText(double value);

/// The number that ".a" (or ".A") stands for; nothing for any other text.
std::optional<double> parseExtendedMissing(std::string_view text);

}  // namespace workbench
