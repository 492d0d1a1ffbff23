/// A table of results read as rows of known quantities, whatever its layout.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "workbench/output/document.h"
#include "workbench/results/grid.h"
#include "workbench/results/known_labels.h"
#include "workbench/results/methods.h"

namespace workbench {

/// What a row of a result is about. Borrowed from the table; null where a row has no such label.
struct ResultSubject {
  const LabelData* variable = nullptr;   ///< a variable with its success, or a pair's two variables
  const LabelData* variable2 = nullptr;  ///< of a pair's statistics: the second measurement
  const LabelData* pair = nullptr;       ///< of a pair's statistics: the pair
  int measurement = 0;                   ///< of a pair's statistics: 1 or 2
  const LabelData* group = nullptr;      ///< of group statistics: the side of the grouping
  const LabelData* methodLabel = nullptr;
  const Method* method = nullptr;  ///< null when the label is not one of a known method

  /// The variable that the row itself describes.
  const LabelData* measured() const { return measurement == 2 ? variable2 : variable; }
};

class ResultRows {
 public:
  /// `table` has to be of a known kind and to outlive the rows.
  ResultRows(const Table& table, EmptyCategories empty);

  const Grid& grid() const { return grid_; }
  const Table& table() const { return grid_.table(); }
  TableKind kind() const { return kind_; }
  size_t count() const { return grid_.rows().placeCount(); }

  ResultSubject subject(size_t row) const;
  /// The cell of a quantity, or null.
  const TableCell* cell(size_t row, Quantity quantity) const;
  /// Its value; missing without a cell.
  double value(size_t row, Quantity quantity) const;
  /// True when the row has any cell; a category without cells makes a row of its own.
  bool hasCells(size_t row) const;
  /// The notes on a row's cells, each once, in the order of the columns.
  std::vector<const CellNoteText*> notes(size_t row) const;

  /// Dimensions of the split groups that share the table, by position in its dimensions().
  const std::vector<size_t>& splitDimensions() const { return splits_; }
  /// The split variable of splitDimensions()[split].
  const LabelData& splitVariable(size_t split) const;
  /// The category of a row in splitDimensions()[split]; null without one.
  const LabelData* splitValue(size_t row, size_t split) const;
  /// Equal exactly for rows of the same split group, in all tables of a procedure.
  std::string splitIdentity(size_t row) const;

  /// The confidence level in percent, when the table shows intervals.
  std::optional<double> level() const { return level_; }
  /// The value that observed proportions are compared with, when the table names it.
  std::optional<double> testValue() const { return testValue_; }
  /// The dimension of the grouping variable; null in tables without one.
  const LabelData* grouping() const;

 private:
  static constexpr size_t kNone = SIZE_MAX;

  void findRowDimensions();
  void findColumns();
  /// The node of a row in a row dimension (by its place among the row dimensions), or null.
  const DimensionNode* node(size_t row, size_t rowDimension) const;
  void describePair(size_t row, int32_t leaf, ResultSubject& subject) const;
  const LabelData* partner(size_t row, const Dimension& dimension, int32_t leafNode) const;

  Grid grid_;
  TableKind kind_;
  std::array<size_t, kQuantityCount> columnOf_;  // kNone where there is none
  std::vector<size_t> splits_;
  // By place among the row dimensions; kNone where there is none.
  size_t variables_ = kNone;
  size_t methods_ = kNone;
  size_t groups_ = kNone;
  std::optional<double> level_;
  std::optional<double> testValue_;
};

}  // namespace workbench
