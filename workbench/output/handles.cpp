#include "workbench/output/handles.h"

#include <utility>

#include "workbench/output/labels.h"

namespace workbench {
namespace {

/// Plain texts of a dimension that are tried before they are looked up.
constexpr size_t kMostRecent = 16;

}  // namespace

NodeHandles& DimensionHandles::node(int32_t index) {
  const auto place = static_cast<size_t>(index);
  while (nodes_.size() <= place) nodes_.emplace_back(*this, static_cast<int32_t>(nodes_.size()));
  return nodes_[place];
}

/// The texts of statistics and methods come again for each of many rows, mostly in one order: the
/// next is the one that came next before.
int32_t DimensionHandles::findRecent(int32_t parent, const BpLabel& label, bool leaf) {
  for (size_t tried = 0; tried < recent_.size(); ++tried, ++nextRecent_) {
    if (nextRecent_ >= recent_.size()) nextRecent_ = 0;
    const DimensionNode& found = model().node(recent_[nextRecent_]);
    if (found.parent == parent && (found.leaf >= 0) == leaf &&
        hasIdentity(label, found.label.identity)) {
      return recent_[nextRecent_++];
    }
  }
  return -1;
}

void DimensionHandles::rememberRecent(int32_t node) {
  if (recent_.size() < kMostRecent) {
    recent_.push_back(node);
    nextRecent_ = recent_.size();
    return;
  }
  if (nextRecent_ >= recent_.size()) nextRecent_ = 0;
  recent_[nextRecent_++] = node;
}

int32_t DimensionHandles::nodeBelow(int32_t parent, const BpLabel& label, bool leaf) {
  const bool isText = label.kind() == BpLabel::Kind::kString;
  if (const int32_t found = isText ? findRecent(parent, label, leaf) : -1; found >= 0) return found;
  std::string identity = identityOf(label);
  int32_t node = model().find(parent, identity, leaf);
  if (node < 0) node = model().add(parent, describe(label, std::move(identity)), leaf);
  if (isText) rememberRecent(node);
  return node;
}

DimensionHandles& TableHandles::dimension(size_t position) {
  while (dimensions_.size() <= position) dimensions_.emplace_back(table, dimensions_.size());
  return dimensions_[position];
}

TableHandles* ProcedureHandles::find(const std::string& identity) const {
  const auto found = tableOf_.find(identity);
  return found == tableOf_.end() ? nullptr : found->second;
}

TableHandles& ProcedureHandles::add(const std::string& identity, Table& table) {
  TableHandles& handles = tables_.emplace_back(table);
  try {
    tableOf_.emplace(identity, &handles);
  } catch (...) {
    tables_.pop_back();
    throw;
  }
  return handles;
}

BpCellText* ProcedureHandles::findCellText(const std::string& key) const {
  for (const auto& text : cellTexts_) {
    if (text->impl().key == key) return text.get();
  }
  return nullptr;
}

BpCellText* ProcedureHandles::addCellText(std::unique_ptr<BpCellText> text) {
  cellTexts_.push_back(std::move(text));
  return cellTexts_.back().get();
}

}  // namespace workbench
