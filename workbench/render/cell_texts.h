/// Cells as a reader sees them.
#pragma once

#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// Counts without decimals; statistics with three decimals, with more when there would be fewer
/// than two significant digits, with an exponent when very small or large; label numbers in
/// shortest form; "." for system-missing.
std::string numberText(double value, BpFormatSpec::Kind format);

/// A p value: three decimals; "<0.001" when it is positive and would read 0.000.
std::string probabilityText(double value);

/// A number that reads back as the same double, for machines; empty for system-missing.
std::string exactNumber(double value);

/// The texts of a table's cells. Knows which of them are p values.
class CellTexts {
 public:
  explicit CellTexts(const Table& table);
  std::string operator()(size_t cell) const;

 private:
  const Table& table_;
  std::vector<std::vector<bool>> isProbability_;  // by dimension and leaf
};

}  // namespace workbench
