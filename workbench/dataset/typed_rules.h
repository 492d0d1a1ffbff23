/// What a dictionary may make of values that come with a type of their own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/values/field.h"

namespace workbench {

/// The kind of a column of numbers of the kind `native` that is wanted as another.
ValueKind wantedKind(ColumnType::Name wanted, ValueKind native);

/// Whether a dictionary lists a number among the missing values, however it is spelt there.
bool isListedMissing(const ColumnType& type, double number);

/// Why a number cannot stand in a column that is wanted so, as a sentence; empty when it can. One
/// that only a missing value can be becomes system-missing, as a text would.
std::string wrongType(const ColumnType& wanted, double& value);

/// The number of each category of an enumeration; kSystemMissing for those without one.
std::vector<double> categoryNumbers(const std::vector<std::string>& categories,
                                    const ColumnType& type);

/// The text that a number becomes where a dictionary makes it one, whatever the source spells it
/// like: binary numbers as shortestNumber, exact ones with all their digits but zeros at the end of
/// the fraction. Empty for NaN; what is no number stays what it is.
std::string numberAsText(std::string_view spelt, bool binary);

/// A text as cases carry it: without trailing blanks, empty when it is missing. With why it cannot
/// be held, as a sentence, if so.
struct KeptText {
  std::string_view text;
  std::string flaw;
};
KeptText keptText(std::string_view text, const FieldRules& rules);

}  // namespace workbench
