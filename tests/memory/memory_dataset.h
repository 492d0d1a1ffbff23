/// A data set made of columns in memory: for tests, benchmarks and generated data.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/memory/plain_table.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/dataset/name_index.h"

namespace workbench {

/// Takes columns of equal length, in any order of the cases: it forms the split groups itself.
/// Nothing may be added or set while a feed is open.
class MemoryDataset final : public ActiveDataset, private FeedObserver {
 public:
  /// NaN and -0 are normalised as in every data set. Each returns the index of the new variable.
  VarIndex addNumbers(Variable variable, std::vector<double> values);
  VarIndex addNumbers(const std::string& name, std::vector<double> values);
  /// The width is found from the values, unless the variable comes with a larger one.
  VarIndex addStrings(Variable variable, std::vector<std::string> values);
  VarIndex addStrings(const std::string& name, std::vector<std::string> values);

  void setWeight(VarIndex variable);
  void setSplit(std::vector<VarIndex> variables);
  void setSeparateSplitLayout(bool separate) { separate_ = separate; }
  /// Cases per chunk at most; at least 1.
  void setChunkSize(int64_t cases) { chunkSize_ = cases; }
  /// All feeds together deliver that many chunks (markers included), then the data set fails with
  /// this text.
  void failAfter(int64_t chunks, std::string failure);

  int32_t variableCount() const override { return static_cast<int32_t>(variables_.size()); }
  const Variable& variable(VarIndex index) override { return declaration(index); }
  const Variable& declaration(VarIndex index) const override;
  VarIndex find(std::string_view name) const override { return names_.find(name); }
  const std::vector<VarIndex>& splitVariables() const override { return split_; }
  VarIndex weightVariable() const override { return weight_; }
  bool separateSplitLayout() const override { return separate_; }
  std::unique_ptr<CaseFeed> openFeed() override;
  const std::vector<SplitValue>& currentSplit() const override;
  bool failed() const override { return failed_; }
  const std::string& failure() const override { return failure_; }
  int64_t caseCount() const override { return caseCount_; }

 private:
  struct Column {
    std::vector<double> numbers;
    std::vector<std::string> strings;
    size_t size() const { return numbers.empty() ? strings.size() : numbers.size(); }
  };

  bool mayContinue() override;
  void passComplete(int64_t cases) override { caseCount_ = cases; }
  void passFailed(const std::exception& error) override;
  VarIndex add(Variable variable, Column column);
  std::shared_ptr<const PlainTable> buildTable() const;

  std::vector<Variable> variables_;
  std::vector<Column> columns_;
  NameIndex names_;
  VarIndex weight_ = -1;
  std::vector<VarIndex> split_;
  bool separate_ = false;
  int64_t chunkSize_ = 1024;
  int64_t caseCount_ = -1;
  int64_t chunksLeft_ = -1;
  std::string laterFailure_;
  std::string failure_;
  bool failed_ = false;
  std::shared_ptr<SplitCursor> cursor_;
  std::shared_ptr<const PlainTable> table_;
};

}  // namespace workbench
