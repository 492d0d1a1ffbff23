/// A slow, plain reader of delimited text, to compare the real one with: one character at a time,
/// all in memory, nothing shared with the real one but what a field's text means.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "workbench/values/field.h"

namespace workbench {

struct PlainRecord {
  size_t line = 1;
  std::vector<std::string> fields;  ///< without quotes and blanks
};

struct PlainTable {
  std::string refusal;     ///< empty; "bytes", "quote", "unclosed", "fields", "empty", "names"
  size_t refusedLine = 0;  ///< 0: of no line
  char delimiter = ',';
  PlainRecord header;
  std::vector<PlainRecord> records;

  /// The values of a column as texts: numbers with 17 digits, texts in brackets, "." missing; with
  /// the kind before all.
  std::vector<std::string> column(size_t position, const FieldRules& rules) const;
};

/// `delimiter` 0: found as the rules say.
PlainTable readPlainly(std::string text, char delimiter, char decimal);

/// A value as PlainTable::column shows it.
std::string shownNumber(double number);

}  // namespace workbench
