#include "workbench/output/document.h"

#include <algorithm>
#include <functional>

namespace workbench {
namespace {

/// As many cells are looked through one by one rather than by their index.
constexpr size_t kFewCells = 64;

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
  const uint64_t wanted = hash(parent, identity, leaf);
  const uint32_t found = index_.find(wanted, [&](uint32_t number) {
    const DimensionNode& child = nodes_[number];
    return child.hash == wanted && child.parent == parent && (child.leaf >= 0) == leaf &&
           child.label.identity == identity;
  });
  return found == NumberIndex::kNone ? -1 : static_cast<int32_t>(found);
}

int32_t Dimension::add(int32_t parent, LabelData label, bool leaf) {
  index_.makeRoom([this](uint32_t number) { return nodes_[number].hash; });
  makeRoom(nodes_);
  makeRoom(leaves_);
  makeRoom(nodes_[static_cast<size_t>(parent)].children);

  // From here on nothing can fail.
  const auto index = static_cast<int32_t>(nodes_.size());
  DimensionNode child;
  child.hash = hash(parent, label.identity, leaf);
  child.label = std::move(label);
  child.parent = parent;
  if (leaf) {
    child.leaf = leafCount();
    leaves_.push_back(index);
  }
  nodes_[static_cast<size_t>(parent)].children.push_back(index);
  index_.insert(child.hash, static_cast<uint32_t>(index));
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
  return findDimensionIf([&](const LabelData& label) { return label.identity == identity; });
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
  for (size_t cell = 0; cell < cells_.size(); ++cell) {
    std::copy_n(places_.data() + cell * stride_, stride_, places.data() + cell * wider);
  }
  newest_.resize(wider);
  place_.resize(wider);
  index_.clear();
  indexed_ = 0;
  places_ = std::move(places);
  stride_ = wider;
}

/// Leaves the place in place_: the leaf in its dimension, the current leaf in every other.
void Table::locate(size_t dimension, int32_t leaf) {
  if (stride_ < dimensions_.size()) widenPlaces();
  for (size_t i = 0; i < stride_; ++i) place_[i] = dimensions_[i].current();
  place_[dimension] = leaf;
}

bool Table::isAtPlace(uint32_t cell) const {
  return std::equal(place_.begin(), place_.end(), &places_[cell * stride_]);
}

/// A table grows row by row: most cells are in a row whose leaf is new to a dimension, and none
/// that was written before can be at such a place.
uint32_t Table::findCell() {
  uint32_t first = 0;
  for (size_t i = 0; i < stride_; ++i) {
    if (place_[i] > newest_[i].leaf) return NumberIndex::kNone;
    if (place_[i] == newest_[i].leaf) first = std::max(first, newest_[i].firstCell);
  }
  return cells_.size() - first <= kFewCells ? findSince(first) : findIndexed();
}

uint32_t Table::findSince(uint32_t first) const {
  for (auto cell = static_cast<uint32_t>(cells_.size()); cell-- > first;) {
    if (isAtPlace(cell)) return cell;
  }
  return NumberIndex::kNone;
}

uint32_t Table::findIndexed() {
  for (; indexed_ < cells_.size(); ++indexed_) {
    index_.makeRoom([this](uint32_t cell) { return hashOfCell(cell); });
    index_.insert(hashOfCell(indexed_), indexed_);
  }
  return index_.find(hash(place_.data(), stride_),
                     [this](uint32_t cell) { return isAtPlace(cell); });
}

void Table::setCell(size_t dimension, int32_t leaf, double value, BpFormatSpec::Kind format) {
  locate(dimension, leaf);
  if (const uint32_t found = findCell(); found != NumberIndex::kNone) {
    cells_[found] = {value, -1, format};
    return;
  }
  makeRoom(cells_);
  places_.insert(places_.end(), place_.begin(), place_.end());
  const auto cell = static_cast<uint32_t>(cells_.size());
  for (size_t i = 0; i < stride_; ++i) {
    if (place_[i] > newest_[i].leaf) newest_[i] = {place_[i], cell};
  }
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
