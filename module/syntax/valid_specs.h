/// The validated command: what the parse fills and every later step reads.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/data_source.h"
#include "host/parser.h"
#include "module/syntax/bin_info_elem.h"

namespace proportions {

/// A bit per method, in the order of the design's method table.
using MethodFlags = std::vector<bool>;

/// The indices without repeats, in the order of their first occurrence.
std::vector<VarIndex> distinctIndices(const std::vector<VarIndex>& indices);

/// One per run; outlives every analysis object. Before a design subcommand has been validated the
/// flag vectors are empty, so flags are read only for the model type that was parsed.
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

  int32_t modelType() const { return modelType_; }
  const std::vector<VarIndex>& testVarIndices() const { return testVarIndices_; }
  const std::vector<VarIndex>& secondVarIndices() const { return secondVarIndices_; }
  double testValue() const { return testValue_; }
  bool orderedPairs() const { return orderedPairs_; }
  VarIndex groupVarIndex() const { return groupVarIndex_; }  ///< -1: none
  bool scopeAnalysis() const { return scopeAnalysis_; }
  bool userMissingIncluded() const { return userMissingIncluded_; }
  bool ignoreCase() const { return ignoreCase_; }
  bool printUpperCase() const { return printUpperCase_; }
  bool printCategoryOrder() const { return printCategoryOrder_; }
  double confidenceLevel() const { return confidenceLevel_; }  ///< percent

  void setModelType(int32_t code) { modelType_ = code; }
  void setTestVarIndices(const std::vector<VarIndex>& indices) { testVarIndices_ = indices; }
  /// Stores the distinct indices, in the order of their first occurrence. The command has its
  /// repeats taken out, with a warning, before it stores a list; this is for other callers.
  void setDistinctTestVarIndices(const std::vector<VarIndex>& indices) {
    testVarIndices_ = distinctIndices(indices);
  }
  void setSecondVarIndices(const std::vector<VarIndex>& indices) { secondVarIndices_ = indices; }
  void setTestValue(double value) { testValue_ = value; }
  void setOrderedPairs(bool ordered) { orderedPairs_ = ordered; }
  void setGroupVarIndex(VarIndex index) { groupVarIndex_ = index; }
  void setScopeAnalysis(bool analysis) { scopeAnalysis_ = analysis; }
  void setUserMissingIncluded(bool included) { userMissingIncluded_ = included; }
  void setIgnoreCase(bool ignore) { ignoreCase_ = ignore; }
  void setPrintUpperCase(bool upper) { printUpperCase_ = upper; }
  void setPrintCategoryOrder(bool print) { printCategoryOrder_ = print; }
  /// Keeps the previous level, silently, unless 0 <= percent < 100.
  void setConfidenceLevel(double percent) {
    if (percent >= 0.0 && percent < 100.0) confidenceLevel_ = percent;
  }

  /// Filled in place by the parse. The elements are parallel to the index vectors; the success
  /// element is the SUCCESS rule as given.
  std::vector<BinInfoElem>& testVarInfo() { return testVarInfo_; }
  std::vector<BinInfoElem>& secondVarInfo() { return secondVarInfo_; }
  BinInfoElem& groupInfo() { return groupInfo_; }
  BinInfoElem& successInfo() { return successInfo_; }
  MethodFlags& testTypes() { return testTypes_; }
  MethodFlags& ciTypes() { return ciTypes_; }
  const std::vector<BinInfoElem>& testVarInfo() const { return testVarInfo_; }
  const std::vector<BinInfoElem>& secondVarInfo() const { return secondVarInfo_; }
  const BinInfoElem& groupInfo() const { return groupInfo_; }
  const BinInfoElem& successInfo() const { return successInfo_; }
  const MethodFlags& testTypes() const { return testTypes_; }
  const MethodFlags& ciTypes() const { return ciTypes_; }

 private:
  ProcedureDataSource& dataSource_;
  int32_t modelType_ = kOneSample;
  std::unique_ptr<VarSpecObj> variableSpecs_;
  std::vector<VarIndex> testVarIndices_;
  std::vector<BinInfoElem> testVarInfo_;
  std::vector<VarIndex> secondVarIndices_;
  std::vector<BinInfoElem> secondVarInfo_;
  double testValue_ = 0.5;
  bool orderedPairs_ = false;
  VarIndex groupVarIndex_ = -1;
  BinInfoElem groupInfo_;
  bool scopeAnalysis_ = true;
  bool userMissingIncluded_ = false;
  BinInfoElem successInfo_;
  bool ignoreCase_ = false;
  bool printUpperCase_ = true;
  bool printCategoryOrder_ = true;
  double confidenceLevel_ = 95.0;
  MethodFlags testTypes_;
  MethodFlags ciTypes_;
  /// Room that the record keeps for the host: null in this command, released with the record.
  struct {
    std::unique_ptr<VarSpecObj> firstOwned;
    std::unique_ptr<VarSpecObj> secondOwned;
    const VarSpecObj* shared = nullptr;
  } handles_;
};

}  // namespace proportions
