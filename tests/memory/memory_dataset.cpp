#include "tests/memory/memory_dataset.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "workbench/dataset/variable.h"

namespace workbench {

VarIndex MemoryDataset::add(Variable variable, Column column) {
  if (!columns_.empty() && column.size() != columns_.front().size()) {
    throw std::invalid_argument("columns of unequal length");
  }
  names_.add(variable.name);
  variables_.push_back(std::move(variable));
  columns_.push_back(std::move(column));
  table_.reset();
  return variableCount() - 1;
}

VarIndex MemoryDataset::addNumbers(Variable variable, std::vector<double> values) {
  variable.width = 0;
  for (double& value : values) value = normalNumber(value);
  return add(std::move(variable), {std::move(values), {}});
}

VarIndex MemoryDataset::addNumbers(const std::string& name, std::vector<double> values) {
  Variable variable;
  variable.name = name;
  return addNumbers(std::move(variable), std::move(values));
}

VarIndex MemoryDataset::addStrings(Variable variable, std::vector<std::string> values) {
  variable.kind = ValueKind::kString;
  variable.width = std::max(variable.width, 1);
  for (std::string& value : values) {
    value = trimmed(value);
    variable.width = std::max(variable.width, static_cast<int32_t>(value.size()));
  }
  return add(std::move(variable), {{}, std::move(values)});
}

VarIndex MemoryDataset::addStrings(const std::string& name, std::vector<std::string> values) {
  Variable variable;
  variable.name = name;
  return addStrings(std::move(variable), std::move(values));
}

void MemoryDataset::setWeight(VarIndex variable) {
  weight_ = variable;
  table_.reset();
}

void MemoryDataset::setSplit(std::vector<VarIndex> variables) {
  split_ = std::move(variables);
  table_.reset();
}

void MemoryDataset::failAfter(int64_t chunks, std::string failure) {
  chunksLeft_ = chunks;
  laterFailure_ = std::move(failure);
}

const Variable& MemoryDataset::declaration(VarIndex index) const {
  return variables_[static_cast<size_t>(index)];
}

void MemoryDataset::passFailed(const std::exception& error) {
  failed_ = true;
  failure_ = error.what();
}

bool MemoryDataset::mayContinue() {
  if (chunksLeft_ == 0 && !failed_) {
    failed_ = true;
    failure_ = laterFailure_;
  }
  if (chunksLeft_ > 0) --chunksLeft_;
  return !failed_;
}

const std::vector<SplitValue>& MemoryDataset::currentSplit() const {
  static const std::vector<SplitValue> none;
  return cursor_ == nullptr || cursor_->values == nullptr ? none : *cursor_->values;
}

std::shared_ptr<const PlainTable> MemoryDataset::buildTable() const {
  std::vector<VarIndex> all(variables_.size());
  std::iota(all.begin(), all.end(), 0);
  auto table = std::make_shared<PlainTable>(all, weight_ >= 0);
  for (size_t i = 0; i < columns_.size(); ++i) {
    const Column& column = columns_[i];
    table->addNumbers(i, column.numbers.data(), column.numbers.size());
    if (variables_[i].isString()) table->declareString(i, variables_[i].width);
    for (const std::string& value : column.strings) table->addString(i, value);
  }
  const size_t count = columns_.empty() ? 0 : columns_.front().size();
  table->setCaseCount(static_cast<int64_t>(count));
  if (weight_ >= 0) {
    const Variable& weight = declaration(weight_);
    const Column& values = columns_[static_cast<size_t>(weight_)];
    for (size_t i = 0; i < count; ++i) {
      table->addWeight(weight.isString() ? kSystemMissing
                                         : normalWeight(weight, values.numbers[i]));
    }
  }
  table->finish(split_);
  return table;
}

std::unique_ptr<CaseFeed> MemoryDataset::openFeed() {
  if (failed_) return nullptr;
  if (table_ == nullptr) table_ = buildTable();
  cursor_ = std::make_shared<SplitCursor>();
  return makePlainFeed(table_, ColumnViews(variableCount()), cursor_, chunkSize_, *this,
                       table_->caseCount());
}

}  // namespace workbench
