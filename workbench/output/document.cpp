#include "workbench/output/document.h"

#include <algorithm>

namespace workbench {

std::vector<std::string> Dimension::path(int32_t leaf) const {
  std::vector<std::string> texts;
  for (int32_t node = leafNode(leaf); node > 0; node = nodes_[static_cast<size_t>(node)].parent) {
    texts.push_back(nodes_[static_cast<size_t>(node)].label.text);
  }
  std::reverse(texts.begin(), texts.end());
  return texts;
}

int32_t Dimension::findOrMake(int32_t parent, const LabelData& label, bool leaf) {
  std::string key = std::to_string(parent) + (leaf ? 'c' : 'g') + label.identity;
  if (const auto found = index_.find(key); found != index_.end()) return found->second;

  // Room is made before anything is changed, so that a failed allocation leaves the tree as it was.
  DimensionNode node;
  node.label = label;
  node.parent = parent;
  const auto index = static_cast<int32_t>(nodes_.size());
  nodes_.reserve(nodes_.size() == nodes_.capacity() ? 2 * nodes_.size() + 1 : 0);
  leaves_.reserve(leaves_.size() == leaves_.capacity() ? 2 * leaves_.size() + 1 : 0);
  auto& children = nodes_[static_cast<size_t>(parent)].children;
  children.reserve(children.size() == children.capacity() ? 2 * children.size() + 1 : 0);
  index_.emplace(std::move(key), index);
  if (leaf) {
    node.leaf = leafCount();
    leaves_.push_back(index);
  }
  children.push_back(index);
  nodes_.push_back(std::move(node));
  return index;
}

size_t Table::PlaceHash::operator()(uint32_t cell) const {
  uint64_t hash = 1469598103934665603ull;  // FNV-1a
  for (size_t i = 0; i < table->stride_; ++i) {
    hash ^= static_cast<uint32_t>(table->places_[cell * table->stride_ + i]);
    hash *= 1099511628211ull;
  }
  return hash ^ (hash >> 29);
}

bool Table::PlaceEqual::operator()(uint32_t a, uint32_t b) const {
  const int32_t* first = &table->places_[a * table->stride_];
  return std::equal(first, first + table->stride_, &table->places_[b * table->stride_]);
}

Dimension& Table::findOrMakeDimension(const LabelData& label) {
  const auto found = dimensionIndex_.find(label.identity);
  if (found != dimensionIndex_.end()) return dimensions_[found->second];
  Dimension& dimension = dimensions_.emplace_back(label);
  try {
    dimensionIndex_.emplace(label.identity, dimensions_.size() - 1);
  } catch (...) {
    dimensions_.pop_back();
    throw;
  }
  return dimension;
}

/// A dimension that comes after the first cells: those have no place in it.
void Table::widenPlaces() {
  const size_t wider = dimensions_.size();
  std::vector<int32_t> places(cells_.size() * wider, -1);
  for (size_t cell = 0; cell < cells_.size(); ++cell) {
    for (size_t i = 0; i < stride_; ++i) places[cell * wider + i] = places_[cell * stride_ + i];
  }
  index_.clear();
  places_ = std::move(places);
  stride_ = wider;
  for (uint32_t cell = 0; cell < cells_.size(); ++cell) index_.insert(cell);
}

TableCell& Table::cellAtCurrent() {
  if (stride_ < dimensions_.size()) widenPlaces();
  const auto index = static_cast<uint32_t>(cells_.size());
  // The new place is written first and looked up by its number; it goes again when it is already
  // there.
  const size_t before = places_.size();
  try {
    for (const Dimension& dimension : dimensions_) places_.push_back(dimension.current());
    cells_.emplace_back();
    const auto [found, isNew] = index_.insert(index);
    if (isNew) return cells_.back();
    places_.resize(before);
    cells_.pop_back();
    return cells_[*found];
  } catch (...) {
    places_.resize(before);
    cells_.resize(index);
    throw;
  }
}

int32_t Table::findOrMakeNote(const std::string& key, const std::string& text) {
  const auto found = std::find(noteKeys_.begin(), noteKeys_.end(), key);
  if (found != noteKeys_.end()) return static_cast<int32_t>(found - noteKeys_.begin());
  noteTexts_.push_back(text);
  try {
    noteKeys_.push_back(key);
  } catch (...) {
    noteTexts_.pop_back();
    throw;
  }
  return static_cast<int32_t>(noteKeys_.size()) - 1;
}

std::vector<size_t> Table::displayOrder(int axis) const {
  std::vector<size_t> order;
  for (size_t i = 0; i < dimensions_.size(); ++i) {
    if (dimensions_[i].axis == axis) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [this](size_t a, size_t b) {
    const Dimension& x = dimensions_[a];
    const Dimension& y = dimensions_[b];
    if (x.isSplit != y.isSplit) return x.isSplit;
    return !x.isSplit && x.level > y.level;
  });
  return order;
}

}  // namespace workbench
