/// A table laid out for reading: rows and columns in display order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// Which categories without cells are laid out: all, or all but those whose label shows a missing
/// value, for they tell a reader nothing.
enum class EmptyCategories : uint8_t { kAll, kReadable };

/// One axis of a table. Its places (rows or columns) are those where cells stand and, for each
/// category without cells that is laid out, one with that category alone.
class GridAxis {
 public:
  GridAxis(const Table& table, int axis, EmptyCategories empty = EmptyCategories::kReadable);

  size_t placeCount() const { return order_.size(); }
  /// By position in the table's dimensions(), outermost first.
  const std::vector<size_t>& dimensions() const { return dimensions_; }
  /// Levels of labels of a dimension of this axis: groups and leaf.
  size_t depth(size_t dimension) const { return depths_[dimension]; }
  /// The place of a cell.
  size_t placeOf(size_t cell) const { return placeOfCell_[cell]; }
  /// The node of a place in a dimension of this axis, -1 when the place has none.
  int32_t node(size_t place, size_t dimension) const;
  /// Labels from the groups down to that node; empty without one.
  std::vector<std::string_view> path(size_t place, size_t dimension) const;

 private:
  uint32_t findOrAdd(const std::vector<int32_t>& place);
  void addCells();
  void addEmptyCategories(EmptyCategories empty);
  /// The split group of each place, numbered in the order in which the groups wrote their cells.
  /// The order of categories would not do: a value that is new in a later group stands last in
  /// its dimension.
  std::vector<int32_t> groupNumbers() const;
  void sortPlaces();

  const Table& table_;
  std::vector<size_t> dimensions_;
  std::vector<size_t> depths_;
  std::vector<int32_t> leaves_;  // of places in order of discovery, one per dimension
  size_t found_ = 0;
  NumberIndex index_;
  std::vector<uint32_t> placeOfCell_;
  std::vector<uint32_t> order_;  // places as discovered, in display order
};

class Grid {
 public:
  static constexpr uint32_t kNoCell = UINT32_MAX;

  explicit Grid(const Table& table, EmptyCategories empty = EmptyCategories::kReadable);

  const Table& table() const { return table_; }
  const GridAxis& rows() const { return rows_; }
  const GridAxis& columns() const { return columns_; }
  uint32_t cell(size_t row, size_t column) const {
    return cells_[row * columns_.placeCount() + column];
  }

 private:
  const Table& table_;
  GridAxis rows_;
  GridAxis columns_;
  std::vector<uint32_t> cells_;
};

}  // namespace workbench
