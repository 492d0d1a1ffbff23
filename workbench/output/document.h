/// What a run has put out, as plain data. Renderers read it and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/output.h"
#include "workbench/output/report.h"

namespace workbench {

/// What names a category, group, dimension or footnote.
struct LabelData {
  std::string identity;       ///< equal exactly for labels of the same structure
  std::string key;            ///< what the procedure passed: a catalogue key or a template
  std::string text;           ///< what a reader sees
  std::string variable;       ///< name of the (first) variable shown, empty when there is none
  bool showsMissing = false;  ///< a missing value is part of the text
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
  int32_t parent = -1;
  std::vector<int32_t> children;
  int32_t leaf = -1;  ///< number of the leaf in order of addition; -1 for groups
  std::vector<LabelData> footnotes;
};

class Dimension {
 public:
  explicit Dimension(LabelData label) : label_(std::move(label)) { nodes_.emplace_back(); }

  const LabelData& label() const { return label_; }
  LabelData& label() { return label_; }
  const std::vector<DimensionNode>& nodes() const { return nodes_; }
  DimensionNode& node(int32_t index) { return nodes_[static_cast<size_t>(index)]; }
  int32_t leafCount() const { return static_cast<int32_t>(leaves_.size()); }
  /// The node of a leaf.
  int32_t leafNode(int32_t leaf) const { return leaves_[static_cast<size_t>(leaf)]; }
  /// Texts from the outermost group to the leaf.
  std::vector<std::string> path(int32_t leaf) const;

  /// The child of that label, made when it is not there yet. Leaves and groups of one label are
  /// different nodes.
  int32_t findOrMake(int32_t parent, const LabelData& label, bool leaf);
  void makeCurrent(int32_t leafNode) { current_ = nodes_[static_cast<size_t>(leafNode)].leaf; }
  /// The leaf that Category found or made last; -1 before.
  int32_t current() const { return current_; }

  int axis = 0;   ///< 0 rows, 1 columns
  int level = 1;  ///< larger stands outside
  bool isSplit = false;

 private:
  LabelData label_;
  std::vector<DimensionNode> nodes_;
  std::vector<int32_t> leaves_;
  std::unordered_map<std::string, int32_t> index_;
  int32_t current_ = -1;
};

struct TableCell {
  double value = 0.0;
  BpFormatSpec::Kind format = BpFormatSpec::Kind::kGeneralStat;
  int32_t note = -1;  ///< index into Table::noteKeys
};

/// A pivot table. Cells are where they were set; a place is a leaf per dimension.
class Table {
 public:
  Table(LabelData title, ShownSplit split) : title_(std::move(title)), split_(std::move(split)) {}
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  const LabelData& title() const { return title_; }
  const ShownSplit& split() const { return split_; }
  /// In order of addition. See displayOrder for the order in which they are read.
  const std::deque<Dimension>& dimensions() const { return dimensions_; }
  std::deque<Dimension>& dimensions() { return dimensions_; }
  Dimension& findOrMakeDimension(const LabelData& label);

  size_t cellCount() const { return cells_.size(); }
  const TableCell& cell(size_t index) const { return cells_[index]; }
  /// The leaf of a cell in a dimension (by position in dimensions()); -1 when it has none.
  int32_t leafOf(size_t cell, size_t dimension) const {
    return dimension < stride_ ? places_[cell * stride_ + dimension] : -1;
  }
  const std::vector<std::string>& noteKeys() const { return noteKeys_; }
  const std::vector<std::string>& noteTexts() const { return noteTexts_; }

  /// The cell at the current leaf of every dimension, made when it is not there yet.
  TableCell& cellAtCurrent();
  int32_t findOrMakeNote(const std::string& key, const std::string& text);

  /// Dimensions of an axis by position in dimensions(), outermost first; split dimensions stand
  /// outside all.
  std::vector<size_t> displayOrder(int axis) const;

 private:
  struct PlaceHash {
    const Table* table;
    size_t operator()(uint32_t cell) const;
  };
  struct PlaceEqual {
    const Table* table;
    bool operator()(uint32_t a, uint32_t b) const;
  };

  void widenPlaces();

  LabelData title_;
  ShownSplit split_;
  std::deque<Dimension> dimensions_;
  std::unordered_map<std::string, size_t> dimensionIndex_;
  size_t stride_ = 0;
  std::vector<int32_t> places_;  ///< stride_ leaves per cell
  std::vector<TableCell> cells_;
  std::unordered_set<uint32_t, PlaceHash, PlaceEqual> index_{16, PlaceHash{this}, PlaceEqual{this}};
  std::vector<std::string> noteKeys_;
  std::vector<std::string> noteTexts_;
};

/// The output of one command.
struct DocumentProcedure {
  std::string title;
  std::string command;
  bool failed = false;
  std::vector<DocumentNote> notes;
  std::vector<DocumentMessage> messages;
  std::vector<std::unique_ptr<Table>> tables;
};

}  // namespace workbench
