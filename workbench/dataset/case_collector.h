/// Makes coded cases of values that come block by block, and counts equal ones as long as it pays.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "workbench/counting/combination_table.h"
#include "workbench/counting/worth_counting.h"
#include "workbench/dataset/case_source.h"
#include "workbench/dataset/value_coder.h"

namespace workbench {

/// For sources that read case by case. Each block is given column by column, then ended.
class CaseCollector {
 public:
  CaseCollector(const std::vector<ValueKind>& kinds, CollapseMode collapse, size_t memoryLimit);

  /// The values must be as CaseColumn has them. A column is given once in every block.
  void addNumbers(size_t column, const double* values, size_t count);
  /// Whole numbers, with `missing` for missing ones.
  void addBytes(size_t column, const uint8_t* values, uint8_t missing, size_t count);
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
  void countBlock(size_t count);
  void appendRows(size_t count);
  void giveUpCodes(size_t column);
  size_t memory() const;

  CodedCases cases_;
  std::vector<NumberCoder> numberCoders_;
  std::vector<TextCoder> textCoders_;
  std::vector<std::vector<uint32_t>> codes_;  // of the block at hand
  std::vector<size_t> codeCounts_;            // how many codes each column has
  std::vector<uint64_t> combinations_;        // of the block at hand, packed
  CombinationTable counted_;
  WorthCounting worthCounting_;
  CollapseMode collapse_;
  size_t memoryLimit_;
  bool counting_;
};

}  // namespace workbench
