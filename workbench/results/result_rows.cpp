#include "workbench/results/result_rows.h"

#include <algorithm>

#include "host/constants.h"

namespace workbench {
namespace {

const Dimension& dimensionOf(const GridAxis& axis, const Table& table, size_t place) {
  return table.dimensions()[axis.dimensions()[place]];
}

/// The variable that a leaf of a pair shows; null for one that shows none.
const std::string* variableShown(const Dimension& dimension, int32_t node) {
  const std::vector<std::string>& variables = dimension.node(node).label.variables;
  return variables.empty() ? nullptr : &variables.front();
}

}  // namespace

ResultRows::ResultRows(const Table& table, EmptyCategories empty)
    : grid_(table, empty), kind_(*tableKindOf(table.title().key)) {
  columnOf_.fill(kNone);
  findRowDimensions();
  findColumns();
}

void ResultRows::findRowDimensions() {
  const GridAxis& rows = grid_.rows();
  for (size_t i = 0; i < rows.dimensions().size(); ++i) {
    const Dimension& dimension = dimensionOf(rows, table(), i);
    const std::string& key = dimension.label().key;
    if (dimension.isSplit) {
      splits_.push_back(i);
    } else if (key == "Variables" && dimension.label().variables.empty()) {
      variables_ = i;
    } else if (kind_.kind == ResultKind::kStatistics) {
      groups_ = i;
    } else {
      methods_ = i;
    }
  }
}

void ResultRows::findColumns() {
  const GridAxis& columns = grid_.columns();
  for (size_t column = 0; column < columns.placeCount(); ++column) {
    for (size_t i = 0; i < columns.dimensions().size(); ++i) {
      const Dimension& dimension = dimensionOf(columns, table(), i);
      const int32_t index = columns.node(column, i);
      if (index < 0) continue;
      const DimensionNode& leaf = dimension.node(index);
      const auto quantity = quantityOf(leaf.label.key);
      if (!quantity) continue;
      columnOf_[static_cast<size_t>(*quantity)] = column;
      const LabelData& parent = dimension.node(leaf.parent).label;
      if (isIntervalGroup(parent.key)) level_ = parent.number;
      const std::vector<LabelData>& footnotes = dimension.footnotes(index);
      if (!footnotes.empty()) testValue_ = footnotes.front().number;
    }
  }
}

const DimensionNode* ResultRows::node(size_t row, size_t rowDimension) const {
  if (rowDimension == kNone) return nullptr;
  const int32_t index = grid_.rows().node(row, rowDimension);
  if (index < 0) return nullptr;
  return &dimensionOf(grid_.rows(), table(), rowDimension).node(index);
}

ResultSubject ResultRows::subject(size_t row) const {
  ResultSubject subject;
  if (const DimensionNode* method = node(row, methods_)) {
    subject.methodLabel = &method->label;
    subject.method = findMethod(kind_, method->label.key);
  }
  if (const DimensionNode* group = node(row, groups_)) subject.group = &group->label;
  const DimensionNode* leaf = node(row, variables_);
  if (leaf == nullptr) return subject;
  if (leaf->parent > 0) {
    describePair(row, grid_.rows().node(row, variables_), subject);
  } else {
    subject.variable = &leaf->label;
  }
  return subject;
}

/// The first variable of a pair is that of its first row, the second that of its last.
void ResultRows::describePair(size_t row, int32_t leaf, ResultSubject& subject) const {
  const Dimension& dimension = dimensionOf(grid_.rows(), table(), variables_);
  const DimensionNode& pair = dimension.node(dimension.node(leaf).parent);
  const std::string* own = variableShown(dimension, leaf);
  const std::string* first = variableShown(dimension, pair.children.front());
  subject.pair = &pair.label;
  subject.measurement = own != nullptr && first != nullptr && *own == *first ? 1 : 2;
  const LabelData* other = partner(row, dimension, leaf);
  subject.variable = &dimension.node(leaf).label;
  subject.variable2 = other;
  if (subject.measurement == 2) std::swap(subject.variable, subject.variable2);
}

/// The label of a pair's other variable in the same split group. A variable may have several
/// labels, of which each group uses one; without a row that has cells, the last one stands for it.
const LabelData* ResultRows::partner(size_t row, const Dimension& dimension,
                                     int32_t leafNode) const {
  const std::string* own = variableShown(dimension, leafNode);
  const DimensionNode& pair = dimension.node(dimension.node(leafNode).parent);
  const auto isOther = [&](int32_t node) {
    const std::string* shown = variableShown(dimension, node);
    return shown != nullptr && own != nullptr && *shown != *own;
  };
  const auto sameGroup = [&](size_t other) {
    return std::all_of(splits_.begin(), splits_.end(), [&](size_t split) {
      return grid_.rows().node(other, split) == grid_.rows().node(row, split);
    });
  };
  const auto inPair = [&](size_t other) {
    const int32_t node = grid_.rows().node(other, variables_);
    return node >= 0 && dimension.node(node).parent == dimension.node(leafNode).parent;
  };
  // Rows of one pair in one group stand together.
  const auto search = [&](size_t start, ptrdiff_t step) -> const LabelData* {
    for (size_t at = start; at < count() && inPair(at) && sameGroup(at);
         at += static_cast<size_t>(step)) {
      const int32_t node = grid_.rows().node(at, variables_);
      if (isOther(node) && hasCells(at)) return &dimension.node(node).label;
    }
    return nullptr;
  };
  if (hasCells(row)) {
    if (const LabelData* found = search(row, 1)) return found;
    if (const LabelData* found = search(row, -1)) return found;
  }
  const auto last = std::find_if(pair.children.rbegin(), pair.children.rend(), isOther);
  return last == pair.children.rend() ? nullptr : &dimension.node(*last).label;
}

const TableCell* ResultRows::cell(size_t row, Quantity quantity) const {
  const size_t column = columnOf_[static_cast<size_t>(quantity)];
  if (column == kNone) return nullptr;
  const uint32_t index = grid_.cell(row, column);
  return index == Grid::kNoCell ? nullptr : &table().cell(index);
}

double ResultRows::value(size_t row, Quantity quantity) const {
  const TableCell* found = cell(row, quantity);
  return found == nullptr ? kSystemMissing : found->value;
}

bool ResultRows::hasCells(size_t row) const {
  for (size_t column = 0; column < grid_.columns().placeCount(); ++column) {
    if (grid_.cell(row, column) != Grid::kNoCell) return true;
  }
  return false;
}

std::vector<const CellNoteText*> ResultRows::notes(size_t row) const {
  std::vector<const CellNoteText*> notes;
  for (size_t column = 0; column < grid_.columns().placeCount(); ++column) {
    const uint32_t index = grid_.cell(row, column);
    const int32_t number = index == Grid::kNoCell ? -1 : table().cell(index).note;
    if (number < 0) continue;
    const CellNoteText* note = &table().notes()[static_cast<size_t>(number)];
    if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
  }
  return notes;
}

const LabelData& ResultRows::splitVariable(size_t split) const {
  return dimensionOf(grid_.rows(), table(), splits_[split]).label();
}

const LabelData* ResultRows::splitValue(size_t row, size_t split) const {
  const DimensionNode* found = node(row, splits_[split]);
  return found == nullptr ? nullptr : &found->label;
}

std::string ResultRows::splitIdentity(size_t row) const {
  std::string identity;
  for (const auto& [name, shown] : table().split()) {
    identity += std::to_string(shown.size()) + ':' + shown;
  }
  for (size_t i = 0; i < splits_.size(); ++i) {
    const LabelData* label = splitValue(row, i);
    const std::string_view part = label == nullptr ? std::string_view() : label->identity;
    identity += std::to_string(part.size()) + ':';
    identity += part;
  }
  return identity;
}

const LabelData* ResultRows::grouping() const {
  if (groups_ == kNone) return nullptr;
  return &dimensionOf(grid_.rows(), table(), groups_).label();
}

}  // namespace workbench
