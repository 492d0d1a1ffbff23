#include "workbench/output/handles.h"

namespace workbench {

NodeHandles& DimensionHandles::node(int32_t index) {
  const auto place = static_cast<size_t>(index);
  while (nodes_.size() <= place) nodes_.emplace_back(*this, static_cast<int32_t>(nodes_.size()));
  return nodes_[place];
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
