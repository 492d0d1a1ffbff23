/// What a run has put out, as plain data. Renderers read it and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/output.h"
#include "workbench/output/case_report.h"
#include "workbench/output/number_index.h"
#include "workbench/output/report.h"

namespace workbench {

/// A value of a variable as a label shows it and as it is.
struct LabelValue {
  std::string shown;  ///< its value label or its text
  /// The number (system-missing too), a text, or a date or time in ISO form.
  std::variant<double, std::string> exact;
};

/// What names a table, dimension, group, category or footnote. Texts are well-formed UTF-8.
struct LabelData {
  std::string identity;                ///< equal exactly for labels of the same structure
  std::string key;                     ///< what the procedure passed: a catalogue key or a template
  std::string text;                    ///< what a reader sees
  std::string owner;                   ///< name of the variable that tells it from others alike
  std::vector<std::string> variables;  ///< names of the variables shown
  std::vector<LabelValue> values;      ///< the values shown
  std::optional<double> number;        ///< the first plain number shown
  bool isValueList = false;            ///< the values stand in a list
  bool showsMissing = false;           ///< a missing value is part of the text
  int twin = 1;                        ///< from 2 on in labels that still read like another one
};

/// The values of the split variables of a group, as shown: variable, value.
using ShownSplit = std::vector<std::pair<std::string, std::string>>;

struct DocumentNote {
  int section;
  std::string label;
  std::string key;
  std::string value;
};

struct DocumentMessage {
  Severity severity;
  int level;
  std::string key;
  std::vector<std::string> arguments;
  std::string text;
  ShownSplit split;  ///< empty when the message is not about a split group
};

/// A node of a dimension's tree. Node 0 is the root and has no label.
struct DimensionNode {
  LabelData label;
  uint64_t hash = 0;  ///< of its place and its label's identity
  int32_t parent = -1;
  int32_t leaf = -1;  ///< number of the leaf in order of addition; -1 for groups
  std::vector<int32_t> children;
};

/// A tree of groups and categories; children stand in the order in which they were added.
class Dimension {
 public:
  explicit Dimension(LabelData label) : label_(std::move(label)) { nodes_.emplace_back(); }

  const LabelData& label() const { return label_; }
  const std::vector<DimensionNode>& nodes() const { return nodes_; }
  const DimensionNode& node(int32_t index) const { return nodes_[static_cast<size_t>(index)]; }
  int32_t leafCount() const { return static_cast<int32_t>(leaves_.size()); }
  /// The node of a leaf.
  int32_t leafNode(int32_t leaf) const { return leaves_[static_cast<size_t>(leaf)]; }
  /// Texts from the outermost group to the leaf.
  std::vector<std::string_view> path(int32_t leaf) const;

  /// The child of that identity, or -1. A leaf and a group of one label are different nodes.
  int32_t find(int32_t parent, std::string_view identity, bool leaf) const;
  /// Adds a child that is not there yet.
  int32_t add(int32_t parent, LabelData label, bool leaf);
  /// In the order in which they were added.
  const std::vector<LabelData>& footnotes(int32_t node) const;
  bool hasFootnote(int32_t node, std::string_view identity) const;
  /// Adds a footnote that the node does not have yet.
  void addFootnote(int32_t node, LabelData footnote);
  /// Makes a leaf the current one.
  void makeCurrent(int32_t leafNode) { current_ = node(leafNode).leaf; }
  /// The current leaf; -1 before there is one.
  int32_t current() const { return current_; }

  LabelData& mutableLabel() { return label_; }
  LabelData& mutableLabel(int32_t node) { return nodes_[static_cast<size_t>(node)].label; }

  int axis = 0;   ///< 1 columns, all else rows
  int level = 1;  ///< larger stands outside
  bool isSplit = false;

 private:
  static uint64_t hash(int32_t parent, std::string_view identity, bool leaf);

  LabelData label_;
  std::vector<DimensionNode> nodes_;
  std::vector<int32_t> leaves_;
  std::map<int32_t, std::vector<LabelData>> footnotes_;  // of the few nodes that have some
  NumberIndex index_;
  int32_t current_ = -1;
};

struct TableCell {
  double value = 0.0;
  int32_t note = -1;  ///< index into the table's notes; -1: none
  BpFormatSpec::Kind format = BpFormatSpec::Kind::kGeneralStat;
};

struct CellNoteText {
  std::string key;
  std::string text;
};

/// A pivot table. A cell stands at a place: one leaf per dimension, -1 in a dimension that had no
/// current leaf when the cell was written.
class Table {
 public:
  Table(LabelData title, ShownSplit split) : title_(std::move(title)), split_(std::move(split)) {}
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  const LabelData& title() const { return title_; }
  /// The group that a table of its own is about; empty for shared tables.
  const ShownSplit& split() const { return split_; }
  /// In order of addition. See displayOrder for the order in which they are read.
  const std::deque<Dimension>& dimensions() const { return dimensions_; }
  Dimension& dimension(size_t position) { return dimensions_[position]; }
  /// The position of the dimension of that identity, or the number of dimensions.
  size_t findDimension(std::string_view identity) const;
  /// The same of the first dimension whose label is the one looked for.
  template <typename IsWanted>
  size_t findDimensionIf(IsWanted isWanted) const {
    size_t position = 0;
    while (position < dimensions_.size() && !isWanted(dimensions_[position].label())) ++position;
    return position;
  }
  size_t addDimension(LabelData label);

  size_t cellCount() const { return cells_.size(); }
  const TableCell& cell(size_t index) const { return cells_[index]; }
  /// The leaf of a cell in a dimension (by position in dimensions()).
  int32_t leafOf(size_t cell, size_t dimension) const {
    return dimension < stride_ ? places_[cell * stride_ + dimension] : -1;
  }
  const std::vector<CellNoteText>& notes() const { return notes_; }

  /// Sets the cell at a leaf of one dimension and the current leaf of every other; a cell that is
  /// there already is replaced, its note included.
  void setCell(size_t dimension, int32_t leaf, double value, BpFormatSpec::Kind format);
  /// Attaches a note to the cell at that place; false when there is none.
  bool setNote(size_t dimension, int32_t leaf, const CellNoteText& note);

  /// Dimensions of an axis by position in dimensions(), outermost first; split dimensions stand
  /// outside all.
  std::vector<size_t> displayOrder(int axis) const;

 private:
  /// The last of a dimension's leaves that has a cell, and the first of its cells.
  struct NewestLeaf {
    int32_t leaf = -1;
    uint32_t firstCell = 0;
  };

  void locate(size_t dimension, int32_t leaf);
  uint32_t findCell();
  uint32_t findSince(uint32_t first) const;
  uint32_t findIndexed();
  bool isAtPlace(uint32_t cell) const;
  static uint64_t hash(const int32_t* place, size_t stride);
  uint64_t hashOfCell(uint32_t cell) const { return hash(&places_[cell * stride_], stride_); }
  void widenPlaces();

  LabelData title_;
  ShownSplit split_;
  std::deque<Dimension> dimensions_;
  size_t stride_ = 0;
  std::vector<int32_t> places_;  ///< stride_ leaves per cell
  std::vector<TableCell> cells_;
  std::vector<NewestLeaf> newest_;  ///< by dimension, the first stride_ of them
  NumberIndex index_;               ///< of the cells before indexed_
  uint32_t indexed_ = 0;
  std::vector<int32_t> place_;  ///< the place that was located last
  std::vector<CellNoteText> notes_;
};

/// The output of one command.
struct DocumentProcedure {
  std::string title;
  std::string command;
  bool failed = false;
  std::vector<std::string> splitVariables;  ///< names, outermost first
  std::vector<DocumentNote> notes;
  std::vector<DocumentMessage> messages;
  std::vector<std::unique_ptr<Table>> tables;
  std::optional<CaseReport> cases;    ///< only when the cases were read to their end
  std::unique_ptr<Table> casesTable;  ///< the same for readers
  std::vector<Advice> advice;
};

}  // namespace workbench
