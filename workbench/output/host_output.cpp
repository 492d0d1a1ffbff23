#include "host/output.h"

#include <utility>

#include "workbench/output/handles.h"
#include "workbench/output/labels.h"
#include "workbench/output/output_document.h"
#include "workbench/session/session.h"

namespace workbench {
namespace {

OutputDocument& document() { return *currentSession().document; }

/// Binds the split dimensions of a shared table to the current group.
void bindSplit(Table& table) {
  for (const SplitPlace& place : document().split()) {
    size_t position = table.findDimension(place.dimension.identity);
    if (position == table.dimensions().size()) {
      position = table.addDimension(place.dimension);
      table.dimension(position).isSplit = true;
    }
    Dimension& dimension = table.dimension(position);
    int32_t node = dimension.find(0, place.category.identity, true);
    if (node < 0) node = dimension.add(0, place.category, true);
    dimension.makeCurrent(node);
  }
}

std::string tableIdentity(const char* lookupName) {
  std::string identity = lookupName;
  if (!document().separateSplits()) return identity;
  for (const SplitPlace& place : document().split()) {
    identity += '\0' + std::to_string(place.category.identity.size()) + ':';
    identity += place.category.identity;
  }
  return identity;
}

TableHandles& addTable(const std::string& identity, const BpString& title) {
  auto table = std::make_unique<Table>(
      describe(title), document().separateSplits() ? document().shownSplit() : ShownSplit());
  auto& tables = document().current().tables;
  tables.push_back(std::move(table));
  try {
    return document().handles().add(identity, *tables.back());
  } catch (...) {
    tables.pop_back();
    throw;
  }
}

}  // namespace
}  // namespace workbench

using workbench::document;

void BpCategory::Cell(const BpNumber& number) {
  const workbench::Dimension& dimension = impl_->dimension.model();
  impl_->dimension.table.setCell(impl_->dimension.position, dimension.node(impl_->node).leaf,
                                 number.value, number.format.kind);
}

void BpCategory::CellNote(const BpCellNote& note) {
  if (note.text == nullptr) return;
  const workbench::Dimension& dimension = impl_->dimension.model();
  // A place without a cell has nothing that a note could be about.
  impl_->dimension.table.setNote(impl_->dimension.position, dimension.node(impl_->node).leaf,
                                 note.text->impl().note);
}

void BpCategory::Note(const BpLabel& label) {
  workbench::Dimension& dimension = impl_->dimension.model();
  const std::string identity = workbench::identityOf(label);
  if (dimension.hasFootnote(impl_->node, identity)) return;
  dimension.addFootnote(impl_->node, workbench::describe(label));
}

BpGroup& BpGroup::Group(const BpLabel& label, int, int) {
  workbench::DimensionHandles& dimension = impl_->dimension;
  const int32_t node = dimension.nodeBelow(impl_->node, label, false);
  return dimension.node(node).group.handle;
}

BpCategory& BpGroup::Category(const BpLabel& label) {
  workbench::DimensionHandles& dimension = impl_->dimension;
  const int32_t node = dimension.nodeBelow(impl_->node, label, true);
  BpCategory& category = dimension.node(node).category.handle;
  dimension.model().makeCurrent(node);
  return category;
}

void BpDimension::Position(int axis, int level, int, int) {
  workbench::Dimension& dimension = impl_->dimension.model();
  dimension.axis = axis;
  dimension.level = level;
}

BpDimension& BpPivotTable::Dimension(const BpLabel& label, int) {
  workbench::Table& table = impl_->table.table;
  size_t position = table.findDimensionIf([&](const workbench::LabelData& known) {
    return workbench::hasIdentity(label, known.identity);
  });
  if (position == table.dimensions().size()) {
    position = table.addDimension(workbench::describe(label));
  }
  return impl_->table.dimension(position).node(0).group.handle;
}

BpPivotTable& BpHeading::PivotTable(const BpString& title, const char* lookupName, int) {
  const std::string identity = workbench::tableIdentity(lookupName);
  workbench::TableHandles* table = impl_->procedure.find(identity);
  if (table == nullptr) table = &workbench::addTable(identity, title);
  if (!document().separateSplits()) workbench::bindSplit(table->table);
  return table->pivot.handle;
}

struct BpProcedure::Impl {};

BpProcedure::BpProcedure(const char* title, int) : impl_(std::make_unique<Impl>()) {
  if (!document().isOpen()) document().beginProcedure(title, "");
  document().current().title = title;
}
BpProcedure::~BpProcedure() = default;

void BpProcedure::SplitChange() { document().setSplit(*workbench::currentSession().dataset); }
BpHeading& BpProcedure::Heading() { return document().handles().heading(); }
BpFormatSpec BpProcedure::Count() const { return {BpFormatSpec::Kind::kCount}; }
BpFormatSpec BpProcedure::GeneralStat() const { return {BpFormatSpec::Kind::kGeneralStat}; }
BpFormatSpec BpProcedure::SigDigit(double) const { return {BpFormatSpec::Kind::kSigDigit}; }

void BpError(const BpLabel& text, int, int level) {
  workbench::LabelData label = workbench::describe(text);
  workbench::DocumentMessage message{workbench::Severity::kWarning, level, {}, {}, {}, {}};
  message.key = std::move(label.key);
  message.text = std::move(label.text);
  bool onGroup = false;
  for (const workbench::LabelPart& part : workbench::partsOf(text)) {
    if (part.isSplitList) {
      onGroup = true;
    } else {
      message.arguments.push_back(workbench::textOf(part));
    }
  }
  if (onGroup) return document().addGroupMessage(std::move(message));
  document().addMessage(std::move(message));
}

void AddNotes(int section, const BpString& label, const BpString& value) {
  const workbench::LabelData shownValue = workbench::describe(value);
  document().current().notes.push_back(
      {section, workbench::describe(label).text, shownValue.key, shownValue.text});
}
