/// Makes tables of the host's own: categories are found or added by the identity of their labels.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// A label of the host's own, shown as the catalogue says. In a session.
LabelData keyedLabel(const std::string& key);
/// The same with placeholders filled.
LabelData keyedLabel(const std::string& key, const std::vector<std::string>& arguments);

class TableBuilder {
 public:
  /// `split` is the group of a table of its own.
  TableBuilder(LabelData title, ShownSplit split);

  /// Dimensions of rows are given outermost first, those of split variables before all others.
  size_t addSplit(LabelData variable);
  size_t addRows(LabelData label);
  size_t addColumns(LabelData label);

  /// Makes a category the current one of its dimension: a path of groups that ends in a leaf.
  void choose(size_t dimension, const std::vector<LabelData>& path);
  /// Sets the cell of the current rows in a column, which becomes the current one.
  void set(size_t columns, const std::vector<LabelData>& path, double value,
           BpFormatSpec::Kind format);
  /// Attaches a note to the cell that was set last.
  void note(const CellNoteText& note);

  bool empty() const { return table_->cellCount() == 0; }
  std::unique_ptr<Table> take();

 private:
  size_t add(LabelData label, int axis);

  std::unique_ptr<Table> table_;
  size_t lastDimension_ = 0;
};

}  // namespace workbench
