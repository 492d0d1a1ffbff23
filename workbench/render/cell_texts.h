/// Cells as a reader sees them.
#pragma once

#include <string>
#include <vector>

#include "workbench/output/document.h"
#include "workbench/render/render.h"

namespace workbench {

/// A number that reads back as the same double, for machines; empty for system-missing.
std::string exactNumber(double value);

/// The texts of a table's cells. Counts have no decimals; numbers of labels are in their shortest
/// form; p values are known by their column. The other numbers of a column all have the same
/// decimals, and so have the two bounds of an interval: three, or as many, up to six, as leave the
/// smallest of them two significant digits; what would still read as nothing, or is too long, has
/// an exponent. "." is system-missing.
class CellTexts {
 public:
  CellTexts(const Table& table, const RenderOptions& options);
  std::string operator()(size_t cell) const;

 private:
  struct Column {
    bool isProbability = false;
    bool inPercent = false;
    int decimals = 3;
  };

  const Column& columnOf(size_t cell) const;
  size_t columnPosition(size_t cell) const;
  void findColumns(const RenderOptions& options);
  void settleDecimals();

  const Table& table_;
  bool hasFixedDigits_;
  size_t dimension_;           ///< whose leaves are the columns
  std::vector<size_t> place_;  ///< leaf -1, 0, 1, ... to its column
  std::vector<Column> columns_;
};

}  // namespace workbench
