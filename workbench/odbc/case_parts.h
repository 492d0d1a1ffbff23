/// Cases in parts, for drivers that hold the whole result of a statement in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "workbench/odbc/counting_statement.h"

namespace workbench {

/// Cases fall into this many parts, by a hash of their values: equal ones into the same.
inline constexpr int kCaseParts = 4096;

/// How large a part is.
struct PartSize {
  int part = 0;
  int64_t cases = 0;
  double bytes = 0;  ///< of the values as texts
};

/// Parts that one statement brings.
struct PartRange {
  int first = 0;
  int last = 0;
  int64_t cases = 0;
  /// Each different case comes once, with the number of cases like it: one part that is large
  /// because many cases are equal.
  bool counted = false;
};

/// Of each part that is not empty a row: its number, its cases, the bytes of their values. The
/// dialect has to know a hash.
std::string partSizesStatement(const Dialect& dialect, const Selection& selection,
                               const std::string& relation);

/// Puts neighbouring parts together as long as a driver takes no more than `memory` bytes for them.
std::vector<PartRange> partRanges(const std::vector<PartSize>& sizes, size_t columns,
                                  double memory);

/// The rows of casesStatement that belong to the parts; counted, the number of cases stands after
/// the values.
std::string partStatement(const Dialect& dialect, const Selection& selection,
                          const std::string& relation, const PartRange& parts);

}  // namespace workbench
