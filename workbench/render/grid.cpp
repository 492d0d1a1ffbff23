#include "workbench/render/grid.h"

#include <algorithm>
#include <map>
#include <set>

namespace workbench {
namespace {

/// Leaves in tree order: position of each leaf.
std::vector<int32_t> treeOrder(const Dimension& dimension) {
  std::vector<int32_t> order(static_cast<size_t>(dimension.leafCount()), 0);
  int32_t next = 0;
  std::vector<int32_t> open{0};
  while (!open.empty()) {
    const DimensionNode& node = dimension.nodes()[static_cast<size_t>(open.back())];
    open.pop_back();
    if (node.leaf >= 0) order[static_cast<size_t>(node.leaf)] = next++;
    open.insert(open.end(), node.children.rbegin(), node.children.rend());
  }
  return order;
}

class AxisLayout {
 public:
  AxisLayout(const Table& table, const std::vector<size_t>& dimensions)
      : table_(table), dimensions_(dimensions) {
    for (const size_t d : dimensions) order_.push_back(treeOrder(table.dimensions()[d]));
  }

  Place placeOf(size_t cell) const {
    Place place;
    for (const size_t d : dimensions_) place.push_back(table_.leafOf(cell, d));
    return place;
  }

  /// All places that have cells and, in rows, a place for each category that has none.
  std::vector<Place> places(bool withEmpty) const {
    std::set<Place> found;
    for (size_t cell = 0; cell < table_.cellCount(); ++cell) found.insert(placeOf(cell));
    if (withEmpty) addEmpty(found);
    std::vector<Place> sorted(found.begin(), found.end());
    std::sort(sorted.begin(), sorted.end(),
              [this](const Place& a, const Place& b) { return sortKey(a) < sortKey(b); });
    return sorted;
  }

 private:
  Place sortKey(const Place& place) const {
    Place key(place.size(), -1);
    for (size_t i = 0; i < place.size(); ++i) {
      if (place[i] >= 0) key[i] = order_[i][static_cast<size_t>(place[i])];
    }
    return key;
  }

  /// Readers are spared categories that were gathered from other groups and show a missing value.
  void addEmpty(std::set<Place>& found) const {
    for (size_t i = 0; i < dimensions_.size(); ++i) {
      const Dimension& dimension = table_.dimensions()[dimensions_[i]];
      if (dimension.isSplit) continue;
      std::vector<bool> used(static_cast<size_t>(dimension.leafCount()), false);
      for (const Place& place : found) {
        if (place[i] >= 0) used[static_cast<size_t>(place[i])] = true;
      }
      for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
        const auto& node = dimension.nodes()[static_cast<size_t>(dimension.leafNode(leaf))];
        if (used[static_cast<size_t>(leaf)] || node.label.showsMissing) continue;
        Place place(dimensions_.size(), -1);
        place[i] = leaf;
        found.insert(place);
      }
    }
  }

  const Table& table_;
  const std::vector<size_t>& dimensions_;
  std::vector<std::vector<int32_t>> order_;
};

std::map<Place, size_t> numbered(const std::vector<Place>& places) {
  std::map<Place, size_t> numbers;
  for (size_t i = 0; i < places.size(); ++i) numbers.emplace(places[i], i);
  return numbers;
}

}  // namespace

size_t depthOf(const Dimension& dimension) {
  size_t deepest = 1;
  for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
    deepest = std::max(deepest, dimension.path(leaf).size());
  }
  return deepest;
}

Grid::Grid(const Table& source)
    : table(source),
      rowDimensions(source.displayOrder(0)),
      columnDimensions(source.displayOrder(1)) {
  const AxisLayout rowLayout(table, rowDimensions), columnLayout(table, columnDimensions);
  rows = rowLayout.places(true);
  columns = columnLayout.places(false);
  const auto rowNumbers = numbered(rows), columnNumbers = numbered(columns);
  cells.assign(rows.size(), std::vector<int64_t>(columns.size(), -1));
  for (size_t cell = 0; cell < table.cellCount(); ++cell) {
    cells[rowNumbers.at(rowLayout.placeOf(cell))][columnNumbers.at(columnLayout.placeOf(cell))] =
        static_cast<int64_t>(cell);
  }
}

std::vector<const LabelData*> Grid::headings(const std::vector<size_t>& dimensions,
                                             const Place& place) const {
  static const LabelData none;
  std::vector<const LabelData*> labels;
  for (size_t i = 0; i < dimensions.size(); ++i) {
    const Dimension& dim = dimension(dimensions[i]);
    std::vector<const LabelData*> path;
    if (place[i] >= 0) {
      for (int32_t n = dim.leafNode(place[i]); n > 0;
           n = dim.nodes()[static_cast<size_t>(n)].parent) {
        path.push_back(&dim.nodes()[static_cast<size_t>(n)].label);
      }
      std::reverse(path.begin(), path.end());
    }
    path.resize(std::max(path.size(), depthOf(dim)), &none);
    labels.insert(labels.end(), path.begin(), path.end());
  }
  return labels;
}

}  // namespace workbench
