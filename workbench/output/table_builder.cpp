#include "workbench/output/table_builder.h"

#include <utility>

#include "workbench/output/distinguish.h"
#include "workbench/output/labels.h"
#include "workbench/output/template.h"

namespace workbench {
namespace {

/// Row dimensions that are added first stand outside; there are never that many.
constexpr int kOutermost = 1000;

}  // namespace

LabelData keyedLabel(const std::string& key) { return keyedLabel(key, {}); }

LabelData keyedLabel(const std::string& key, const std::vector<std::string>& arguments) {
  LabelData label;
  label.identity = 'K' + key;
  for (const std::string& argument : arguments) {
    label.identity += std::to_string(argument.size()) + ':' + argument;
  }
  label.key = key;
  label.text = fillTemplate(catalogueText(key), arguments);
  return label;
}

TableBuilder::TableBuilder(LabelData title, ShownSplit split)
    : table_(std::make_unique<Table>(std::move(title), std::move(split))) {}

size_t TableBuilder::add(LabelData label, int axis) {
  const size_t position = table_->addDimension(std::move(label));
  table_->dimension(position).axis = axis;
  table_->dimension(position).level = kOutermost - static_cast<int>(position);
  return position;
}

size_t TableBuilder::addSplit(LabelData variable) {
  const size_t position = add(std::move(variable), 0);
  table_->dimension(position).isSplit = true;
  return position;
}

size_t TableBuilder::addRows(LabelData label) { return add(std::move(label), 0); }

size_t TableBuilder::addColumns(LabelData label) { return add(std::move(label), 1); }

void TableBuilder::choose(size_t position, const std::vector<LabelData>& path) {
  Dimension& dimension = table_->dimension(position);
  int32_t node = 0;
  for (size_t i = 0; i < path.size(); ++i) {
    const bool leaf = i + 1 == path.size();
    const int32_t found = dimension.find(node, path[i].identity, leaf);
    node = found >= 0 ? found : dimension.add(node, path[i], leaf);
  }
  dimension.makeCurrent(node);
}

void TableBuilder::set(size_t columns, const std::vector<LabelData>& path, double value,
                       BpFormatSpec::Kind format) {
  choose(columns, path);
  lastDimension_ = columns;
  table_->setCell(columns, table_->dimension(columns).current(), value, format);
}

void TableBuilder::note(const CellNoteText& note) {
  table_->setNote(lastDimension_, table_->dimension(lastDimension_).current(), note);
}

std::unique_ptr<Table> TableBuilder::take() {
  distinguishLabels(*table_);
  return std::move(table_);
}

}  // namespace workbench
