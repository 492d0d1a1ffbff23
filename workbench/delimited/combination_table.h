/// How often each combination of codes occurs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench {

/// Combinations are words of 64 bits with the codes of four columns each.
class CombinationTable {
 public:
  static constexpr size_t kCodesPerWord = 4;
  static constexpr uint32_t kMostCodes = 1U << 16U;  ///< codes are below

  explicit CombinationTable(size_t columns);

  /// Counts a combination `times` more; `words` are words() words.
  void add(const uint64_t* words, int64_t times = 1);

  size_t words() const { return words_; }
  size_t size() const { return size_; }
  int64_t cases() const { return cases_; }
  size_t memory() const { return table_.capacity() * sizeof(uint64_t); }

  /// Calls `visit(words, count)` with every combination, in no particular order.
  template <class Visit>
  void forEach(Visit visit) const {
    for (size_t at = 0; at < table_.size(); at += words_ + 1) {
      if (table_[at] != 0) visit(table_.data() + at + 1, static_cast<int64_t>(table_[at]));
    }
  }

  static uint32_t codeIn(const uint64_t* words, size_t column) {
    return static_cast<uint32_t>(words[column / kCodesPerWord] >> shift(column) & 0xFFFFU);
  }
  static void setCode(uint64_t* words, size_t column, uint32_t code) {
    words[column / kCodesPerWord] |= static_cast<uint64_t>(code) << shift(column);
  }

 private:
  /// The first column highest: combinations in the order of their words are in that of their codes.
  static unsigned shift(size_t column) {
    return static_cast<unsigned>(48 - 16 * (column % kCodesPerWord));
  }
  uint64_t* slotOf(const uint64_t* words);
  void grow();

  size_t words_;
  size_t slots_;
  size_t size_ = 0;
  int64_t cases_ = 0;
  std::vector<uint64_t> table_;  // of each slot the count, 0 when it is free, and the words
};

}  // namespace workbench
