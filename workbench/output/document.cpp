#include "workbench/output/document.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace workbench {
namespace {

/// Room for one more element, so that adding it cannot fail half-way through several additions.
template <typename Element>
void makeRoom(std::vector<Element>& elements) {
  if (elements.size() == elements.capacity()) {
    elements.reserve(std::max<size_t>(4, 2 * elements.size()));
  }
}

uint64_t mixed(uint64_t value) {
  value *= 0x9E3779B97F4A7C15u;  // the golden ratio: spreads low bits upwards
  return value ^ (value >> 29);
}

}  // namespace

std::vector<std::string_view> Dimension::path(int32_t leaf) const {
  std::vector<std::string_view> texts;
  for (int32_t at = leafNode(leaf); at > 0; at = node(at).parent) {
    texts.push_back(node(at).label.text);
  }
  std::reverse(texts.begin(), texts.end());
  return texts;
}

uint64_t Dimension::hash(int32_t parent, std::string_view identity, bool leaf) {
  const auto place = 2 * static_cast<uint64_t>(parent) + (leaf ? 1 : 0);
  return mixed(std::hash<std::string_view>()(identity) + mixed(place + 1));
}

int32_t Dimension::find(int32_t parent, std::string_view identity, bool leaf) const {
  const uint32_t found = index_.find(hash(parent, identity, leaf), [&](uint32_t number) {
    const DimensionNode& child = nodes_[number];
    return child.parent == parent && (child.leaf >= 0) == leaf && child.label.identity == identity;
  });
  return found == NumberIndex::kNone ? -1 : static_cast<int32_t>(found);
}

int32_t Dimension::add(int32_t parent, LabelData label, bool leaf) {
  index_.makeRoom([this](uint32_t number) {
    const DimensionNode& child = nodes_[number];
    return hash(child.parent, child.label.identity, child.leaf >= 0);
  });
  makeRoom(nodes_);
  makeRoom(leaves_);
  makeRoom(nodes_[static_cast<size_t>(parent)].children);

  // From here on nothing can fail.
  const auto index = static_cast<int32_t>(nodes_.size());
  DimensionNode child;
  child.label = std::move(label);
  child.parent = parent;
  if (leaf) {
    child.leaf = leafCount();
    leaves_.push_back(index);
  }
  nodes_[static_cast<size_t>(parent)].children.push_back(index);
  index_.insert(hash(parent, child.label.identity, leaf), static_cast<uint32_t>(index));
  nodes_.push_back(std::move(child));
  return index;
}

const std::vector<LabelData>& Dimension::footnotes(int32_t index) const {
  static const std::vector<LabelData> none;
  const auto found = footnotes_.find(index);
  return found == footnotes_.end() ? none : found->second;
}

bool Dimension::hasFootnote(int32_t index, std::string_view identity) const {
  const std::vector<LabelData>& known = footnotes(index);
  return std::any_of(known.begin(), known.end(),
                     [&](const LabelData& footnote) { return footnote.identity == identity; });
}

void Dimension::addFootnote(int32_t index, LabelData footnote) {
  footnotes_[index].push_back(std::move(footnote));
}

size_t Table::findDimension(std::string_view identity) const {
  const auto found =
      std::find_if(dimensions_.begin(), dimensions_.end(),
                   [&](const Dimension& entry) { return entry.label().identity == identity; });
  return static_cast<size_t>(found - dimensions_.begin());
}

size_t Table::addDimension(LabelData label) {
  dimensions_.emplace_back(std::move(label));
  return dimensions_.size() - 1;
}

uint64_t Table::hash(const int32_t* place, size_t stride) {
  uint64_t result = 0;
  for (size_t i = 0; i < stride; ++i) result = mixed(result + static_cast<uint32_t>(place[i]) + 1);
  return result;
}

/// A dimension that comes after the first cells: those have no place in it.
void Table::widenPlaces() {
  const size_t wider = dimensions_.size();
  std::vector<int32_t> places(cells_.size() * wider, -1);
  NumberIndex index;
  for (uint32_t cell = 0; cell < cells_.size(); ++cell) {
    const auto from = places_.begin() + static_cast<ptrdiff_t>(cell * stride_);
    std::copy(from, from + static_cast<ptrdiff_t>(stride_),
              places.begin() + static_cast<ptrdiff_t>(cell * wider));
    const auto hashOf = [&](uint32_t number) { return hash(&places[number * wider], wider); };
    index.makeRoom(hashOf);
    index.insert(hashOf(cell), cell);
  }
  place_.resize(wider);
  index_ = std::move(index);
  places_ = std::move(places);
  stride_ = wider;
}

/// Leaves the place in place_: the leaf in its dimension, the current leaf in every other.
void Table::locate(size_t dimension, int32_t leaf) {
  if (stride_ < dimensions_.size()) widenPlaces();
  for (size_t i = 0; i < stride_; ++i) place_[i] = dimensions_[i].current();
  place_[dimension] = leaf;
}

uint32_t Table::findCell() const {
  return index_.find(hash(place_.data(), stride_), [this](uint32_t cell) {
    return std::memcmp(&places_[cell * stride_], place_.data(), stride_ * sizeof(int32_t)) == 0;
  });
}

void Table::setCell(size_t dimension, int32_t leaf, double value, BpFormatSpec::Kind format) {
  locate(dimension, leaf);
  if (const uint32_t found = findCell(); found != NumberIndex::kNone) {
    cells_[found] = {value, -1, format};
    return;
  }
  index_.makeRoom([this](uint32_t cell) { return hashOfCell(cell); });
  makeRoom(cells_);
  places_.insert(places_.end(), place_.begin(), place_.end());
  index_.insert(hash(place_.data(), stride_), static_cast<uint32_t>(cells_.size()));
  cells_.push_back({value, -1, format});
}

bool Table::setNote(size_t dimension, int32_t leaf, const CellNoteText& note) {
  locate(dimension, leaf);
  const uint32_t cell = findCell();
  if (cell == NumberIndex::kNone) return false;
  auto known = std::find_if(notes_.begin(), notes_.end(), [&](const CellNoteText& entry) {
    return entry.key == note.key && entry.text == note.text;
  });
  if (known == notes_.end()) known = notes_.insert(notes_.end(), note);
  cells_[cell].note = static_cast<int32_t>(known - notes_.begin());
  return true;
}

std::vector<size_t> Table::displayOrder(int axis) const {
  std::vector<size_t> order;
  for (size_t i = 0; i < dimensions_.size(); ++i) {
    if ((dimensions_[i].axis == 1) == (axis == 1)) order.push_back(i);
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
