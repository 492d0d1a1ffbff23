/// The statements that cases are read by.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "workbench/odbc/dialect.h"

namespace workbench {

/// More different cases than these are not counted at the server.
inline constexpr size_t kMostCombinations = 200'000;
/// The raw weights above 0 are summed in two parts, which are exact far longer than the plain sum
/// in binary is: whole multiples of one over this, and what remains.
inline constexpr double kWeightParts = 1'048'576;  // 2^20

struct SelectedColumn {
  const ServerColumn* column = nullptr;
  bool asText = false;
};

struct Selection {
  std::vector<SelectedColumn> columns;
  /// The weight, when the server may round it: it is not among the columns.
  const ServerColumn* weight = nullptr;
};

/// Whether the server can round the column's values as weights.
bool canRound(const ServerColumn& column);

/// Each case is a row.
std::string casesStatement(const Dialect& dialect, const Selection& selection,
                           const std::string& relation);

/// Each combination of values is a row: the values, with a weight the rounded one, the number of
/// cases, and with a weight four sums: of the raw weights above 0 in two parts (kWeightParts), of
/// those below 0, and of the cases whose weight is odd. Nothing when the server cannot keep all
/// values apart.
std::optional<std::string> countingStatement(const Dialect& dialect, const Selection& selection,
                                             const std::string& relation);

}  // namespace workbench
