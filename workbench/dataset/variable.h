/// A variable of a data set, and the rules about its values that every data set shares.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/constants.h"

namespace workbench {

/// Bytes of the widest text that a variable holds.
inline constexpr size_t kWidestString = 32'767;

/// What a variable's values are. All but strings are held as doubles: dates and date-times as
/// seconds since 1970-01-01 00:00:00, times as seconds since midnight, booleans as 0 and 1.
enum class ValueKind : uint8_t { kNumber, kBoolean, kDate, kTime, kDateTime, kString };

/// A variable's entry in the dictionary. Strings are without trailing blanks throughout.
struct Variable {
  std::string name;
  std::string label;  ///< empty: none
  ValueKind kind = ValueKind::kNumber;
  int32_t width = 0;  ///< bytes of the widest value, at least 1, for strings; 0 for all others
  std::vector<std::pair<double, std::string>> numberLabels;
  std::vector<std::pair<std::string, std::string>> stringLabels;
  std::vector<double> missingNumbers;
  double missingLow = 1.0;  ///< a range of missing numbers; low > high: none
  double missingHigh = 0.0;
  /// True when the numbers of that range are .a to .z (extended_missing.h) and are shown so.
  bool extendedMissing = false;
  std::vector<std::string> missingStrings;
  /// Of ordered categories: each code with the text that stands for it in the data. Empty for all
  /// other variables.
  std::vector<std::pair<double, std::string>> categoryTexts;

  bool isString() const { return kind == ValueKind::kString; }
  /// What a reader sees instead of the name.
  const std::string& shownName() const { return label.empty() ? name : label; }
  /// The value label, or null.
  const std::string* findLabel(double value) const;
  const std::string* findLabel(std::string_view value) const;
};

/// One value of a split variable: a number (kSystemMissing when missing) or a string without
/// trailing blanks.
using SplitValue = std::variant<double, std::string>;

/// 8-byte words that an observation takes.
inline int32_t wordsOf(const Variable& variable) { return ObsLength(variable.width); }

/// True when a number is one of the variable's user-missing values.
bool isUserMissing(const Variable& variable, double value);

/// A number as cases carry it: NaN is system-missing, and there is one zero only.
inline double normalNumber(double value) {
  if (std::isnan(value)) return kSystemMissing;
  return value == 0.0 ? 0.0 : value;
}

/// A raw weight as cases carry it: user-missing weights are system-missing too.
double normalWeight(const Variable& weight, double value);

/// The weight that an analysis uses: the nearest whole number, halves up; kSystemMissing for a
/// weight that drops its case.
double roundedWeight(double raw);

/// Without its trailing blanks.
std::string_view trimmed(std::string_view text);

/// Writes a string as an observation of `words` words: its bytes, then blanks.
void writeObservation(std::string_view text, int32_t words, double* out);

/// The order of split values: missing before all numbers, numbers ascending, strings in the order
/// of the locale and, where that sees no difference, of their bytes. Negative, 0 or positive.
int compareSplitValues(const SplitValue& a, const SplitValue& b);

}  // namespace workbench
