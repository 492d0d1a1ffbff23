#include <utility>

#include "host/output.h"
#include "workbench/output/handles.h"
#include "workbench/output/labels.h"
#include "workbench/output/output_document.h"
#include "workbench/session/session.h"

namespace workbench {

BpCategory& TableHandles::category(Dimension& dimension, int32_t node) {
  const auto [found, isNew] = categoryOf_.try_emplace({&dimension, node}, nullptr);
  if (found->second == nullptr) {
    BpCategory::Impl& impl = categories_.emplace_back();
    impl.table = this;
    impl.dimension = &dimension;
    impl.node = node;
    found->second = &impl;
  }
  return found->second->handle;
}

BpGroup::Impl& TableHandles::group(Dimension& dimension, int32_t node) {
  const auto [found, isNew] = groupOf_.try_emplace({&dimension, node}, nullptr);
  if (found->second == nullptr) {
    BpGroup::Impl& impl = groups_.emplace_back();
    impl.table = this;
    impl.dimension = &dimension;
    impl.node = node;
    found->second = &impl;
  }
  return *found->second;
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

BpCellText* ProcedureHandles::addCellText(std::unique_ptr<BpCellText> text) {
  // A text that was replicated before serves again: tables repeat the same note in thousands of
  // cells.
  for (const auto& known : cellTexts_) {
    if (known->impl().key == text->impl().key) return known.get();
  }
  cellTexts_.push_back(std::move(text));
  return cellTexts_.back().get();
}

namespace {

OutputDocument& document() { return *currentSession().document; }

/// Binds the split dimensions of a shared table to the current group.
void bindSplit(Table& table) {
  for (size_t i = 0; i < document().splitLabels().size(); ++i) {
    Dimension& dimension = table.findOrMakeDimension(document().splitVariables()[i]);
    dimension.isSplit = true;
    dimension.makeCurrent(dimension.findOrMake(0, document().splitLabels()[i], true));
  }
}

}  // namespace
}  // namespace workbench

using workbench::document;

void BpCategory::Cell(const BpNumber& number) {
  impl_->dimension->makeCurrent(impl_->node);
  workbench::TableCell& cell = impl_->table->table.cellAtCurrent();
  cell = {number.value, number.format.kind, -1};
}

void BpCategory::CellNote(const BpCellNote& note) {
  if (note.text == nullptr) return;
  impl_->dimension->makeCurrent(impl_->node);
  workbench::Table& table = impl_->table->table;
  const BpCellText::Impl& text = note.text->impl();
  const int32_t index = table.findOrMakeNote(text.key, text.text);
  table.cellAtCurrent().note = index;
}

void BpCategory::Note(const BpLabel& label) {
  workbench::LabelData note = workbench::describe(label);
  auto& footnotes = impl_->dimension->node(impl_->node).footnotes;
  for (const workbench::LabelData& known : footnotes) {
    if (known.identity == note.identity) return;
  }
  footnotes.push_back(std::move(note));
}

BpGroup& BpGroup::Group(const BpLabel& label, int, int) {
  workbench::Dimension& dimension = *impl_->dimension;
  const int32_t node = dimension.findOrMake(impl_->node, workbench::describe(label), false);
  return impl_->table->group(dimension, node).handle;
}

BpCategory& BpGroup::Category(const BpLabel& label) {
  workbench::Dimension& dimension = *impl_->dimension;
  const int32_t node = dimension.findOrMake(impl_->node, workbench::describe(label), true);
  BpCategory& category = impl_->table->category(dimension, node);
  dimension.makeCurrent(node);
  return category;
}

void BpDimension::Position(int axis, int level, int, int) {
  impl_->dimension->axis = axis;
  impl_->dimension->level = level;
}

BpDimension& BpPivotTable::Dimension(const BpLabel& label, int) {
  workbench::TableHandles& handles = *impl_->table;
  return handles.group(handles.table.findOrMakeDimension(workbench::describe(label)), 0).handle;
}

BpPivotTable& BpHeading::PivotTable(const BpString& title, const char* lookupName, int) {
  const bool separate = document().separateSplits();
  std::string identity = lookupName;
  if (separate) {
    for (const workbench::LabelData& value : document().splitLabels()) {
      identity += '\0' + value.identity;
    }
  }
  workbench::TableHandles* handles = impl_->procedure->find(identity);
  if (handles == nullptr) {
    auto table = std::make_unique<workbench::Table>(
        workbench::describe(title), separate ? document().shownSplit() : workbench::ShownSplit());
    auto& tables = document().current().tables;
    tables.push_back(std::move(table));
    handles = &impl_->procedure->add(identity, *tables.back());
  }
  if (!separate) workbench::bindSplit(handles->table);
  return handles->pivot.handle;
}

BpCellText::BpCellText(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
BpCellText::~BpCellText() = default;

BpCellText* BpCellText::Replicate(const BpString& text) {
  auto impl = std::make_unique<Impl>();
  impl->key = text.text();
  impl->text = workbench::catalogueText(text.text());
  return document().handles().addCellText(
      std::unique_ptr<BpCellText>(new BpCellText(std::move(impl))));
}

struct BpProcedure::Impl {};

BpProcedure::BpProcedure(const char* title, int) : impl_(std::make_unique<Impl>()) {
  document().current().title = title;
}
BpProcedure::~BpProcedure() = default;

void BpProcedure::SplitChange() { document().setSplit(*workbench::currentSession().dataset); }
BpHeading& BpProcedure::Heading() { return document().handles().heading(); }
BpFormatSpec BpProcedure::Count() const { return {BpFormatSpec::Kind::kCount}; }
BpFormatSpec BpProcedure::GeneralStat() const { return {BpFormatSpec::Kind::kGeneralStat}; }
BpFormatSpec BpProcedure::SigDigit(double) const { return {BpFormatSpec::Kind::kSigDigit}; }

void BpError(const BpLabel& text, int, int level) {
  const workbench::LabelData label = workbench::describe(text);
  workbench::DocumentMessage message{
      workbench::Severity::kWarning, level, label.key, {}, label.text, {}};
  for (const workbench::LabelItem& item : workbench::itemsOf(text)) {
    if (item.isSplitList) {
      message.split = document().shownSplit();
    } else {
      message.arguments.push_back(item.data.text);
    }
  }
  document().addMessage(std::move(message));
}

void AddNotes(int section, const BpString& label, const BpString& value) {
  document().current().notes.push_back({section, workbench::catalogueText(label.text()),
                                        value.text(), workbench::catalogueText(value.text())});
}
