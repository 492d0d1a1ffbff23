/// The output document that the recorded tables build up: for reading the result as tables, where
/// the transcript shows it as calls.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/output.h"
#include "tests/recording/host.h"

/// A cell note's text.
struct BpCellText::Impl {
  recording::Life self{recording::Kind::kCellText};
  std::string text;
};

namespace recording {

/// A label by its structure: "Wald" in quotes, [var 0 show 2], or composite "^1 = ^2" [var 0 show
/// 2] [value var 0 1 pref 2].
std::string describe(const BpLabel& label);
std::string describe(const BpNumber& number);  ///< "5 Count"
std::string describe(const BpDataValue& value);
std::string shown(const BpFormatSpec& format);

struct TableState;

/// A dimension, a group or a category.
struct Node {
  Node(Kind kind, std::string nodeLabel) : life(kind), label(std::move(nodeLabel)) {}
  virtual ~Node() = default;

  Life life;
  std::string label;
  TableState* table = nullptr;
  size_t dimension = 0;  ///< position in the table
  Node* parent = nullptr;
  std::vector<std::unique_ptr<Node>> children;  ///< groups and categories, in order of addition
  std::vector<std::string> footnotes;           ///< of a category

  /// The labels from below the dimension down to here, joined by " / ".
  std::string path() const;
};

struct DimensionState : Node {
  explicit DimensionState(std::string dimensionLabel)
      : Node(Kind::kDimension, std::move(dimensionLabel)) {}
  std::string position;           ///< "0 1 0 0"
  const Node* current = nullptr;  ///< the current category
};

struct CellState {
  double number = 0;
  std::string format;
  std::vector<std::string> notes;
};

struct TableState {
  TableState(std::string tableTitle, std::string tableSplit)
      : life(Kind::kTable), title(std::move(tableTitle)), split(std::move(tableSplit)) {}
  virtual ~TableState() = default;

  /// Where a cell of `category` stands: the split group and the category in each dimension. Throws
  /// std::logic_error when a dimension has no current category.
  std::string place(const Node& category) const;

  Life life;
  std::string title;
  std::string split;     ///< of separate tables
  std::string splitRow;  ///< of shared tables: the group that the rows belong to now
  std::vector<std::unique_ptr<DimensionState>> dimensions;
  std::vector<std::string> order;  ///< of the cells
  std::map<std::string, CellState> cells;
};

struct OutputState {
  std::vector<std::unique_ptr<TableState>> tables;
  std::vector<std::unique_ptr<BpCellText>> cellTexts;
};

/// The output of the open host.
OutputState& currentOutput();
/// All tables as text: title, dimensions with their positions and categories, then one line per
/// cell. Numbers have 12 significant digits: the last ones are the mathematics library's.
std::string tablesText();

}  // namespace recording
