/// Rules about single values of a variable that every data set shares.
#pragma once

#include <cstdint>
#include <string_view>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// 8-byte words that an observation takes: 1 for numbers, (width + 7) / 8 for strings.
inline int32_t wordsOf(const Variable& variable) {
  return variable.width <= 8 ? 1 : (variable.width + 7) / 8;
}

/// True when a number is one of the variable's user-missing values.
bool isUserMissing(const Variable& variable, double value);

/// A number as cases carry it: NaN is system-missing, and there is one zero only.
double normalNumber(double value);

/// A raw weight as cases carry it: user-missing weights are system-missing too.
double normalWeight(const Variable& weight, double value);

/// Without its trailing blanks.
std::string_view trimmed(std::string_view text);

/// Writes a string as an observation of `words` words: its bytes, then blanks.
void writeObservation(std::string_view text, int32_t words, double* out);

/// The order of split values: missing before all numbers, numbers ascending, strings in the order
/// of the locale and, where that sees no difference, of their bytes. Negative, 0 or positive.
int compareSplitValues(const SplitValue& a, const SplitValue& b);

}  // namespace workbench
