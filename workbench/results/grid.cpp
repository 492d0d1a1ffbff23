#include "workbench/results/grid.h"

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>

namespace workbench {
namespace {

/// The position of each leaf when the tree is read from its root; last for no leaf (index -1 + 1).
std::vector<int32_t> ranks(const Dimension& dimension) {
  std::vector<int32_t> result(static_cast<size_t>(dimension.leafCount()) + 1, 0);
  int32_t next = 0;
  std::vector<int32_t> open{0};
  while (!open.empty()) {
    const DimensionNode& node = dimension.node(open.back());
    open.pop_back();
    if (node.leaf >= 0) result[static_cast<size_t>(node.leaf) + 1] = next++;
    open.insert(open.end(), node.children.rbegin(), node.children.rend());
  }
  result[0] = std::numeric_limits<int32_t>::max();
  return result;
}

size_t depthOf(const Dimension& dimension) {
  std::vector<size_t> depths(dimension.nodes().size(), 0);
  size_t deepest = 1;
  for (size_t i = 1; i < depths.size(); ++i) {  // parents come before their children
    const DimensionNode& node = dimension.nodes()[i];
    depths[i] = depths[static_cast<size_t>(node.parent)] + 1;
    if (node.leaf >= 0) deepest = std::max(deepest, depths[i]);
  }
  return deepest;
}

uint64_t hashOf(const int32_t* place, size_t size) {
  uint64_t result = size;
  for (size_t i = 0; i < size; ++i) {
    result = (result ^ static_cast<uint32_t>(place[i])) * 0x9E3779B97F4A7C15u;
    result ^= result >> 29;
  }
  return result;
}

}  // namespace

GridAxis::GridAxis(const Table& table, int axis, EmptyCategories empty)
    : table_(table), dimensions_(table.displayOrder(axis)) {
  for (const size_t d : dimensions_) depths_.push_back(depthOf(table.dimensions()[d]));
  addCells();
  addEmptyCategories(empty);
  sortPlaces();
}

uint32_t GridAxis::findOrAdd(const std::vector<int32_t>& place) {
  const size_t size = dimensions_.size();
  const uint64_t hash = hashOf(place.data(), size);
  const uint32_t known = index_.find(hash, [&](uint32_t number) {
    return std::equal(place.begin(), place.end(), leaves_.data() + number * size);
  });
  if (known != NumberIndex::kNone) return known;
  index_.makeRoom([&](uint32_t number) { return hashOf(leaves_.data() + number * size, size); });
  leaves_.insert(leaves_.end(), place.begin(), place.end());
  index_.insert(hash, static_cast<uint32_t>(found_));
  return static_cast<uint32_t>(found_++);
}

void GridAxis::addCells() {
  std::vector<int32_t> place(dimensions_.size());
  placeOfCell_.reserve(table_.cellCount());
  for (size_t cell = 0; cell < table_.cellCount(); ++cell) {
    for (size_t i = 0; i < place.size(); ++i) place[i] = table_.leafOf(cell, dimensions_[i]);
    placeOfCell_.push_back(findOrAdd(place));
  }
}

void GridAxis::addEmptyCategories(EmptyCategories empty) {
  const size_t size = dimensions_.size();
  const size_t withCells = found_;
  for (size_t i = 0; i < size; ++i) {
    const Dimension& dimension = table_.dimensions()[dimensions_[i]];
    std::vector<bool> used(static_cast<size_t>(dimension.leafCount()), false);
    for (size_t place = 0; place < withCells; ++place) {
      const int32_t leaf = leaves_[place * size + i];
      if (leaf >= 0) used[static_cast<size_t>(leaf)] = true;
    }
    std::vector<int32_t> place(size, -1);
    for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
      if (used[static_cast<size_t>(leaf)]) continue;
      const bool isMissing = dimension.node(dimension.leafNode(leaf)).label.showsMissing;
      if (isMissing && empty == EmptyCategories::kReadable) continue;
      place[i] = leaf;
      findOrAdd(place);
    }
  }
}

std::vector<int32_t> GridAxis::groupNumbers() const {
  const size_t size = dimensions_.size();
  size_t splits = 0;
  while (splits < size && table_.dimensions()[dimensions_[splits]].isSplit) ++splits;
  std::map<std::vector<int32_t>, int32_t> known;
  std::vector<int32_t> result;
  for (size_t place = 0; place < found_; ++place) {
    const auto first = leaves_.begin() + static_cast<ptrdiff_t>(place * size);
    std::vector<int32_t> group(first, first + static_cast<ptrdiff_t>(splits));
    const bool isWhole = std::find(group.begin(), group.end(), -1) == group.end();
    const auto next = static_cast<int32_t>(known.size());
    result.push_back(isWhole ? known.emplace(std::move(group), next).first->second
                             : std::numeric_limits<int32_t>::max());
  }
  return result;
}

void GridAxis::sortPlaces() {
  const size_t size = dimensions_.size();
  const std::vector<int32_t> group = groupNumbers();
  std::vector<std::vector<int32_t>> rankOf;
  for (const size_t d : dimensions_) rankOf.push_back(ranks(table_.dimensions()[d]));
  order_.resize(found_);
  std::iota(order_.begin(), order_.end(), 0u);
  std::stable_sort(order_.begin(), order_.end(), [&](uint32_t a, uint32_t b) {
    if (group[a] != group[b]) return group[a] < group[b];
    for (size_t i = 0; i < size; ++i) {
      const int32_t x = rankOf[i][static_cast<size_t>(leaves_[a * size + i]) + 1];
      const int32_t y = rankOf[i][static_cast<size_t>(leaves_[b * size + i]) + 1];
      if (x != y) return x < y;
    }
    return false;
  });
  std::vector<uint32_t> position(found_);
  for (uint32_t i = 0; i < order_.size(); ++i) position[order_[i]] = i;
  for (uint32_t& place : placeOfCell_) place = position[place];
}

int32_t GridAxis::node(size_t place, size_t dimension) const {
  const int32_t leaf = leaves_[order_[place] * dimensions_.size() + dimension];
  return leaf < 0 ? -1 : table_.dimensions()[dimensions_[dimension]].leafNode(leaf);
}

std::vector<std::string_view> GridAxis::path(size_t place, size_t dimension) const {
  const int32_t leaf = leaves_[order_[place] * dimensions_.size() + dimension];
  if (leaf < 0) return {};
  return table_.dimensions()[dimensions_[dimension]].path(leaf);
}

Grid::Grid(const Table& table, EmptyCategories empty)
    : table_(table),
      rows_(table, 0, empty),
      columns_(table, 1, empty),
      cells_(rows_.placeCount() * columns_.placeCount(), kNoCell) {
  for (size_t cell = 0; cell < table.cellCount(); ++cell) {
    cells_[rows_.placeOf(cell) * columns_.placeCount() + columns_.placeOf(cell)] =
        static_cast<uint32_t>(cell);
  }
}

}  // namespace workbench
