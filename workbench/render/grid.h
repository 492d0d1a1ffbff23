/// A table laid out for reading: rows and columns in display order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// Where a row or column stands: a leaf per dimension of its axis, outermost first; -1 in the inner
/// dimensions of a category without cells.
using Place = std::vector<int32_t>;

struct Grid {
  explicit Grid(const Table& table);

  const Table& table;
  std::vector<size_t> rowDimensions;
  std::vector<size_t> columnDimensions;
  std::vector<Place> rows;
  std::vector<Place> columns;
  /// Cell number per row and column; -1 where there is none.
  std::vector<std::vector<int64_t>> cells;

  /// Labels from the outside in of a place; groups of a dimension come before their leaf. Inner
  /// places without a leaf give empty labels, so that all rows have the same depth.
  std::vector<const LabelData*> headings(const std::vector<size_t>& dimensions,
                                         const Place& place) const;
  const Dimension& dimension(size_t index) const { return table.dimensions()[index]; }
};

/// Levels of groups above the deepest leaf, leaf included.
size_t depthOf(const Dimension& dimension);

}  // namespace workbench
