// ProcedureDataSource and its variables over the session's active data set.
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "host/data_source.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/dataset/case_observer.h"
#include "workbench/dataset/variable.h"
#include "workbench/session/session.h"
#include "workbench/text/text_fold.h"

struct ZELK_ValueLabelMap::Impl {
  const workbench::Variable* variable;
};

struct ZELK_Variable::Impl {
  explicit Impl(const workbench::Variable& entry) : variable(entry), labels{&variable} {}
  workbench::Variable variable;
  ZELK_ValueLabelMap::Impl labels;
};

namespace {

/// A variable handed to the procedure, with what it points to.
struct OwnedVariable {
  explicit OwnedVariable(const workbench::Variable& entry)
      : impl(entry),
        variable(&impl, impl.variable.width,
                 NumericMissingView{impl.variable.missingNumbers.data(),
                                    impl.variable.missingNumbers.size(), impl.variable.missingLow,
                                    impl.variable.missingHigh}) {}
  ZELK_Variable::Impl impl;
  ZELK_Variable variable;
};

}  // namespace

struct ProcedureDataSource::Impl {
  explicit Impl(workbench::ActiveDataset& active)
      : dataset(active), variables(static_cast<size_t>(active.variableCount())) {}
  workbench::ActiveDataset& dataset;
  // Made when first asked for: the width of a string costs a read of the data.
  std::vector<std::unique_ptr<OwnedVariable>> variables;
};

const std::string* ZELK_ValueLabelMap::Find(double value) const {
  return impl_->variable->findLabel(value);
}

const std::string* ZELK_ValueLabelMap::Find(std::string_view value) const {
  return impl_->variable->findLabel(value);
}

bool ZELK_Variable::IsMissingString(const void* obs) const {
  const std::string_view value = workbench::trimmed(
      std::string_view(static_cast<const char*>(obs), static_cast<size_t>(type_)));
  if (value.empty()) return true;
  const std::vector<std::string>& missing = impl_->variable.missingStrings;
  return std::find(missing.begin(), missing.end(), value) != missing.end();
}

ZelkVarName ZELK_Variable::GetName() const { return ZelkVarName(impl_->variable.name); }

ZelkVarName ZELK_Variable::GetUpName() const {
  return ZelkVarName(workbench::upperCase(impl_->variable.name));
}

std::string ZELK_Variable::GetLabel() const { return impl_->variable.label; }

ZELK_Format ZELK_Variable::GetFormat() const {
  ZELK_Format format;
  if (impl_->variable.isString()) {
    format.type = kStringFormatType;
  } else if (impl_->variable.kind != workbench::ValueKind::kNumber) {
    // Numeric kinds other than plain numbers lie above the two kinds of strings.
    format.type = static_cast<uint8_t>(2 + static_cast<int>(impl_->variable.kind));
  }
  format.width = static_cast<uint8_t>(std::min(type_, 255));
  return format;
}

ZELK_Format ZELK_Variable::GetFormatEx() const { return GetFormat(); }

ZELK_ValueLabelMap ZELK_Variable::GetValueLabels() const {
  return ZELK_ValueLabelMap(&impl_->labels);
}

int32_t ZELK_DataSource::GetVariableCount() const {
  const auto& source = static_cast<const ProcedureDataSource&>(*this);
  return source.impl_->dataset.variableCount();
}

const ZELK_Variable& ZELK_DataSource::GetVariable(VarIndex index) const {
  auto& impl = *static_cast<const ProcedureDataSource&>(*this).impl_;
  std::unique_ptr<OwnedVariable>& owned = impl.variables.at(static_cast<size_t>(index));
  if (owned == nullptr) owned = std::make_unique<OwnedVariable>(impl.dataset.variable(index));
  return owned->variable;
}

VarIndex ZELK_DataSource::FindVariable(std::string_view name) const {
  return static_cast<const ProcedureDataSource&>(*this).impl_->dataset.find(name);
}

ProcedureDataSource::ProcedureDataSource() {
  workbench::ActiveDataset* dataset = workbench::currentSession().dataset;
  if (dataset == nullptr) throw std::logic_error("the session has no active data set");
  impl_ = std::make_unique<Impl>(*dataset);
}

ProcedureDataSource::~ProcedureDataSource() = default;

// Resampled groups are made when a run asks for them, whatever the procedure declares.
void ProcedureDataSource::Bootstrapping(bool) {}

bool ProcedureDataSource::FatalError() const { return impl_->dataset.failed(); }

int32_t ProcedureDataSource::GetNSplitVars() const {
  return static_cast<int32_t>(impl_->dataset.splitVariables().size());
}

VarIndex ProcedureDataSource::GetSplitVarIndex(int32_t position) const {
  return impl_->dataset.splitVariables().at(static_cast<size_t>(position));
}

bool ProcedureDataSource::SplitLayoutSeparate() const {
  return impl_->dataset.separateSplitLayout();
}

VarIndex ProcedureDataSource::GetWeightVarIndex() const { return impl_->dataset.weightVariable(); }

ZELK_InputCaseIterator* ProcedureDataSource::MakeIterator(const ZELK_CaseSelection*) {
  if (impl_->dataset.failed()) return nullptr;
  std::unique_ptr<CaseFeed> feed = impl_->dataset.openFeed();
  if (feed == nullptr) return nullptr;
  workbench::CaseObserver*& observer = workbench::currentSession().observer;
  if (observer != nullptr) feed = workbench::observed(std::move(feed), impl_->dataset, *observer);
  observer = nullptr;
  return std::make_unique<ProcDSIterator>(std::move(feed)).release();
}

int QBOOTSTRAPPING() { return 0; }
