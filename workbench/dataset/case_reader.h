/// Turns the rows of queries into cases.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/dataset/case_table.h"
#include "workbench/engine/database.h"

namespace workbench {

/// One column of a query's result, in its order there.
struct ReadColumn {
  VarIndex variable = -1;
  const Variable* entry = nullptr;
  bool wholeOnly = false;  ///< fractions are errors
};

/// Adds chunks of a result to case tables. The result has the columns in order, then what stands
/// for the weight.
class CaseReader {
 public:
  /// What follows the columns in the result.
  enum class Weights {
    kNone,
    kRaw,     ///< the weight as it stands
    kCounts,  ///< how many cases are alike
    kRounded  ///< the rounded weight (null: dropped), then how many cases are alike
  };

  /// `weight` is the weight variable's entry, for kRaw. `label` begins messages.
  CaseReader(std::vector<ReadColumn> columns, Weights weights, const Variable* weight,
             std::string label);

  /// An empty table; strings are at least as wide as their entries say.
  CaseTable newTable() const;
  /// Throws DataError when a value cannot be a case's.
  void add(const Chunk& chunk, CaseTable& table);

  int64_t casesRead() const { return cases_; }
  /// The sum of all weights that count; meant for kCounts and kRounded.
  double totalWeight() const { return totalWeight_; }

 private:
  void addNumbers(const Chunk& chunk, size_t column, CaseTable& table) const;
  void addStrings(const Chunk& chunk, size_t column, CaseTable& table) const;
  void addRawWeights(const Chunk& chunk, CaseTable& table) const;
  void addCounts(const Chunk& chunk, CaseTable& table);
  [[noreturn]] void refuse(size_t column, size_t row, const std::string& what) const;

  std::vector<ReadColumn> columns_;
  Weights weights_;
  const Variable* weight_;
  std::string label_;
  int64_t cases_ = 0;
  double totalWeight_ = 0;
};

}  // namespace workbench
