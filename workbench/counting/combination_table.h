/// How often each combination of codes occurs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench {

/// A combination is packed into as few words as the numbers of codes allow. Combinations in the
/// order of their words are in the order of their codes, first column first.
class CombinationTable {
 public:
  explicit CombinationTable(size_t columns);

  /// Makes room for codes of each column below that number; what was counted stays.
  void fit(const std::vector<size_t>& codes);

  /// Of a packed combination.
  size_t words() const { return words_; }
  /// Adds the codes of a column to `count` combinations, whose words were 0 to begin with.
  void pack(size_t column, const uint32_t* codes, size_t count, uint64_t* combinations) const;
  uint32_t codeIn(const uint64_t* combination, size_t column) const {
    const Field& field = fields_[column];
    return static_cast<uint32_t>(combination[field.word] >> field.shift & field.mask);
  }

  /// Counts each of `count` combinations once.
  void addAll(const uint64_t* combinations, size_t count);
  void add(const uint64_t* combination, int64_t times);

  size_t size() const { return size_; }
  /// How many combinations there are in all, those that were not met yet included: at least that
  /// many, as far as what was met tells (Chao 1984, Scandinavian Journal of Statistics 11:265-270,
  /// in the form without a division by zero).
  double estimatedSize() const;

  size_t memory() const { return table_.capacity() * sizeof(uint64_t); }

  /// Calls `visit(combination, count)` with every one, in no particular order.
  template <class Visit>
  void forEach(Visit visit) const {
    for (size_t at = 0; at < table_.size(); at += words_ + 1) {
      if (table_[at] != 0) visit(table_.data() + at + 1, static_cast<int64_t>(table_[at]));
    }
  }

 private:
  /// Where the codes of a column are.
  struct Field {
    uint32_t word = 0;
    uint32_t shift = 0;
    uint32_t mask = 0;
  };
  uint64_t hashOf(const uint64_t* combination) const;
  uint64_t* slotOf(const uint64_t* combination, uint64_t hash);
  void place(std::vector<unsigned> bits);
  void grow();

  std::vector<unsigned> bits_;  // of the codes, by column
  std::vector<Field> fields_;
  size_t words_ = 1;
  size_t slots_;
  size_t size_ = 0;
  std::vector<uint64_t> table_;  // of each slot the count, 0 when it is free, and the words
};

}  // namespace workbench
