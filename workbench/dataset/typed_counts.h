/// Counts given in place of data.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/dataset/name_index.h"

namespace workbench {

/// Cases that are all alike.
struct CountedCases {
  std::vector<double> values;  ///< one per variable
  uint64_t count;
};

/// A design with its counts, as it is typed in.
struct TypedCounts {
  std::vector<std::string> variables;
  std::vector<CountedCases> cases;  ///< without combinations that do not occur
  std::string command;              ///< every method of the design
};

/// Reads "81/263" (one sample), "189/11034 104/11037" (two groups) or "59,6,16,80" (pairs: both,
/// the first only, the second only, neither). Throws std::invalid_argument that says what is wrong.
TypedCounts readTypedCounts(const std::vector<std::string>& texts);

/// The data set that the counts stand for: as many cases, without a weight variable. It takes no
/// more room than the different cases.
class CountsDataset final : public ActiveDataset {
 public:
  explicit CountsDataset(TypedCounts counts);

  int32_t variableCount() const override { return static_cast<int32_t>(variables_.size()); }
  const Variable& variable(VarIndex index) override { return declaration(index); }
  const Variable& declaration(VarIndex index) const override;
  VarIndex find(std::string_view name) const override { return names_.find(name); }
  const std::vector<VarIndex>& splitVariables() const override { return noSplit_; }
  VarIndex weightVariable() const override { return -1; }
  bool separateSplitLayout() const override { return false; }
  std::unique_ptr<CaseFeed> openFeed() override;
  const std::vector<SplitValue>& currentSplit() const override { return noSplitValues_; }
  bool failed() const override { return false; }
  const std::string& failure() const override { return noFailure_; }
  int64_t caseCount() const override { return cases_; }

 private:
  TypedCounts counts_;
  std::vector<Variable> variables_;
  NameIndex names_;
  int64_t cases_ = 0;
  std::vector<VarIndex> noSplit_;
  std::vector<SplitValue> noSplitValues_;
  std::string noFailure_;
};

}  // namespace workbench
