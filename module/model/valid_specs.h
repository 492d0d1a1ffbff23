/// The validated command: what the parse fills and every later step reads.
#pragma once

#include <memory>
#include <vector>

#include "host/data_source.h"
#include "host/parser.h"
#include "module/model/command_settings.h"

namespace proportions {

/// The indices without repeats, in the order of their first occurrence.
std::vector<VarIndex> distinctIndices(const std::vector<VarIndex>& indices);

/// One per run; outlives every analysis object.
class PRPValidSpecs {
 public:
  explicit PRPValidSpecs(ProcedureDataSource& source) : dataSource_(source) {
    // The host wants to be asked once per record, whoever uses the answer.
    source.GetWeightVarIndex();
  }
  PRPValidSpecs(const PRPValidSpecs&) = delete;
  PRPValidSpecs& operator=(const PRPValidSpecs&) = delete;

  ProcedureDataSource& dataSource() const { return dataSource_; }
  /// The host's own variable specifications; null, since nothing hands any over.
  const VarSpecObj* variableSpecs() const { return variableSpecs_.get(); }
  /// Every setting, read by name.
  const CommandSettings& settings() const { return settings_; }
  /// The SUCCESS rule as given, before it is copied per variable.
  const BinInfoElem& successInfo() const { return successInfo_; }

  void setModelType(Design code) { settings_.modelType = code; }
  void setTestVarIndices(const std::vector<VarIndex>& indices) {
    settings_.testVarIndices = indices;
  }
  /// Stores the distinct indices, in the order of their first occurrence. The command has its
  /// repeats taken out, with a warning, before it stores a list; this is for other callers.
  void setDistinctTestVarIndices(const std::vector<VarIndex>& indices) {
    settings_.testVarIndices = distinctIndices(indices);
  }
  void setSecondVarIndices(const std::vector<VarIndex>& indices) {
    settings_.secondVarIndices = indices;
  }
  void setTestValue(double value) { settings_.testValue = value; }
  void setOrderedPairs(bool ordered) { settings_.orderedPair = ordered; }
  void setGroupVarIndex(VarIndex index) { settings_.groupVarIndex = index; }
  void setScopeAnalysis(bool analysis) { settings_.scopeAnalysis = analysis; }
  void setUserMissingIncluded(bool included) { settings_.userMissingIncluded = included; }
  /// These three keep their defaults: no part of the command sets them.
  void setIgnoreCase(bool ignore) { settings_.ignoreCase = ignore; }
  void setPrintUpperCase(bool upper) { settings_.printUpperCase = upper; }
  void setPrintCategoryOrder(bool print) { settings_.printCategoryOrder = print; }
  /// Keeps the previous level, silently, unless 0 <= percent < 100.
  void setConfidenceLevel(double percent) {
    if (percent >= 0.0 && percent < 100.0) settings_.ciLevel = percent;
  }

  /// Filled in place by the parse.
  std::vector<BinInfoElem>& testVarInfo() { return settings_.testVarInfo; }
  std::vector<BinInfoElem>& secondVarInfo() { return settings_.secondVarInfo; }
  BinInfoElem& groupInfo() { return settings_.groupInfo; }
  BinInfoElem& successInfo() { return successInfo_; }
  MethodFlags& testTypes() { return settings_.testTypes; }
  MethodFlags& ciTypes() { return settings_.ciTypes; }

 private:
  ProcedureDataSource& dataSource_;
  std::unique_ptr<VarSpecObj> variableSpecs_;
  CommandSettings settings_;
  BinInfoElem successInfo_;
  /// Room that the record keeps for the host: null in this command, released with the record.
  struct {
    std::unique_ptr<VarSpecObj> firstOwned;
    std::unique_ptr<VarSpecObj> secondOwned;
    const VarSpecObj* shared = nullptr;
  } handles_;
};

}  // namespace proportions
