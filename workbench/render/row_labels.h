/// The labels that head a table's rows.
#pragma once

#include <string>
#include <vector>

#include "workbench/render/text_block.h"
#include "workbench/results/grid.h"

namespace workbench {

/// The labels of all rows: one for each level of each row dimension, outermost first.
class RowLabels {
 public:
  explicit RowLabels(const Grid& grid);

  size_t levels() const { return titles_.size(); }
  /// The name of a level's dimension; empty on the inner levels of a dimension, unless `first` says
  /// that the levels before this one stand elsewhere.
  const std::string& title(size_t level, size_t first) const;
  /// The widest label of a level or its title, in columns.
  size_t naturalWidth(size_t level) const { return widths_[level]; }
  size_t rowCount() const { return rows_.placeCount(); }
  /// The labels of a row by level; empty ones where it has none.
  std::vector<const std::string*> labelsOf(size_t row) const;
  /// How many outer levels a row shares with the row before.
  size_t sharedLevels(size_t row) const;
  /// The outer `count` labels of a row in one line, each with what it is a value of.
  std::string joined(size_t row, size_t count) const;

 private:
  void addDimension(const Dimension& dimension, size_t depth);

  const GridAxis& rows_;
  std::vector<std::string> titles_;
  std::vector<bool> namesValues_;  ///< by level: its labels are values of the variable in the title
  std::vector<size_t> widths_;
  std::vector<std::vector<std::string>> labels_;  // by dimension and node
  std::vector<std::vector<int32_t>> parents_;     // likewise
};

/// The columns of labels before a table's numbers.
class RowHeadings {
 public:
  /// The levels from `first` on, each at most as wide as its limit. `labels` stays borrowed.
  RowHeadings(const RowLabels& labels, size_t first, const std::vector<size_t>& limits);

  /// The width of all columns and the gaps after them.
  size_t width() const;
  /// The names of the dimensions.
  Block titles() const;
  /// The lines that head a row; rows have to be asked for in order, from the first. Labels that a
  /// row shares with the one before are not repeated, but those of several lines go on beside the
  /// rows that share them.
  Lines nextLines(size_t row);
  /// True when rows of another outermost label begin here and such groups take many lines.
  bool startsGroup(size_t row) const;

 private:
  Lines wrapped(const std::string& label, size_t level) const;
  size_t shared(size_t row) const;
  bool findsLargeGroups();

  const RowLabels& labels_;
  size_t first_;
  std::vector<size_t> limits_;
  std::vector<size_t> widths_;
  std::vector<Lines> lines_;        // of the labels of the row at hand, by level from first_
  std::vector<size_t> shownLines_;  // of these
  bool hasLargeGroups_ = false;
};

}  // namespace workbench
