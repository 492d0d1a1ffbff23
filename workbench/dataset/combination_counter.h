/// Counts how often each combination of codes occurs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench {

class CombinationCounter {
 public:
  /// `columns` codes make a combination; at least one.
  explicit CombinationCounter(size_t columns) : columns_(columns) {}

  /// Counts `count` cases, given column by column.
  void add(const std::vector<std::vector<uint32_t>>& codes, size_t count);

  size_t combinations() const { return counts_.size(); }
  int64_t cases() const { return cases_; }
  const std::vector<double>& counts() const { return counts_; }
  /// The codes of a column, combination by combination.
  std::vector<uint32_t> codesOf(size_t column) const;
  size_t memory() const;

  /// How many combinations there are in all, those that were not met yet included, as far as what
  /// was met tells: at least that many (Chao 1984, Scandinavian Journal of Statistics 11:265-270,
  /// in the form without a division by zero).
  double estimatedCombinations() const;

 private:
  static constexpr uint32_t kNone = 0xFFFFFFFF;
  void grow();
  size_t insert(uint64_t hash, const std::vector<std::vector<uint32_t>>& codes, size_t row);

  size_t columns_;
  std::vector<uint32_t> keys_;    // combination by combination
  std::vector<uint64_t> hashes_;  // likewise
  std::vector<double> counts_;
  std::vector<uint32_t> slots_;
  std::vector<uint64_t> pending_;
  int64_t cases_ = 0;
};

}  // namespace workbench
