/// Makes coded cases of values that come block by block, and counts equal ones as long as it pays.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/combination_counter.h"
#include "workbench/dataset/value_coder.h"

namespace workbench {

/// For sources that read case by case. Each block is given column by column, then ended.
class CaseCollector {
 public:
  /// `expectedCases` is a guess, negative without one.
  CaseCollector(const std::vector<ValueKind>& kinds, CollapseMode collapse, size_t memoryLimit,
                int64_t expectedCases);

  /// The values must be as CaseColumn has them. A column is given once in every block.
  void addNumbers(size_t column, const double* values, size_t count);
  void addTexts(size_t column, const std::string_view* values, size_t count);
  /// Codes whose values the caller keeps.
  void addCodes(size_t column, const uint32_t* codes, size_t count);
  /// `count` is the number of cases that each column got, `otherMemory` the bytes that the caller
  /// holds for them. False when the cases take more than the limit: they are dropped then, and
  /// nothing more needs to come.
  bool endBlock(size_t count, size_t otherMemory = 0);

  CodedCases finish();

 private:
  void stopCounting();
  void considerCounting();
  void appendRows(size_t count);
  void giveUpCodes(size_t column);
  size_t memory() const;

  CodedCases cases_;
  std::vector<NumberCoder> numberCoders_;
  std::vector<TextCoder> textCoders_;
  std::vector<std::vector<uint32_t>> codes_;  // of the block at hand
  CombinationCounter counter_;
  CollapseMode collapse_;
  size_t memoryLimit_;
  int64_t expectedCases_;
  bool counting_;
  int64_t nextCheck_;
};

}  // namespace workbench
